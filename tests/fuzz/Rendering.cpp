// SPDX-License-Identifier: GPL-3.0-or-later

#include <array>
#include <span>
#include <string>

#include "engine/Placeholders.h"
#include "engine/TemplateEngine.h"
#include "fuzz/Check.h"
#include "fuzz/Targets.h"
#include "support/TestPlatform.h"
#include "text/Text.h"

namespace sprig::fuzz {

namespace {

constexpr std::array<std::string_view, 11> keys = {
    "date", "time", "datetime", "year", "month", "day", "project", "folder", "author", "filename", "name"};

/// Placeholders filled in the plain way: at each place, is there one?
std::string filledIn(std::string_view text, const PlaceholderValues& values) {
  std::string result;
  while (!text.empty()) {
    std::size_t length = 0;
    for (const auto key : text.starts_with("{{") ? std::span(keys) : std::span<const std::string_view>()) {
      for (const std::string space : {"", " "}) {
        const auto token = "{{" + space + std::string(key) + space + "}}";
        if (!text.starts_with(token)) continue;
        result += *values.find(key);
        length = token.size();
      }
    }
    if (length == 0) result += text.front();
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result;
}

std::string takeField(std::string_view& input) {
  const auto end = input.find('\0');
  std::string field(input.substr(0, end));
  input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
  return field;
}

}  // namespace

void tryRendering(std::string_view input) {
  static const test::TestPlatform platform;
  TemplateItem item;
  item.filenamePattern = takeField(input);
  item.extensionName = takeField(input);
  const auto typedName = takeField(input);
  const auto folder = takeField(input);
  item.content = input;

  const auto date = platform.clock.now();
  const auto [name, content] = TemplateEngine::render(item, typedName, folder, std::nullopt, date);
  auto values = makePlaceholderValues(folder, std::nullopt, date);
  values.set("filename", name);
  values.set("name", TemplateEngine::parseFilenameComponents(name).base);
  check(content == filledIn(item.content, values), "each placeholder is filled in once");
  if (!text::trimWhitespaceAndNewlines(typedName).empty()) {
    check(name.starts_with(text::trimWhitespaceAndNewlines(typedName)), "a typed name stays");
  } else {
    check(name == TemplateEngine::renderSuggestedFilename(item, folder, std::nullopt, date),
          "without a typed name the suggested one is taken");
  }
}

}  // namespace sprig::fuzz
