// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Targets.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <array>
#include <charconv>
#include <chrono>
#include <optional>
#include <span>
#include <string>

#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"
#include "engine/Placeholders.h"
#include "engine/TemplateEngine.h"
#include "fuzz/Check.h"
#include "support/TestPlatform.h"
#include "text/Text.h"
#include "text/TrailingNumber.h"

namespace sprig::fuzz {

namespace {

/// What the expression that describes a numbered name finds.
std::optional<text::TrailingNumber> byExpression(std::string_view name) {
  UErrorCode status = U_ZERO_ERROR;
  const auto input =
      icu::UnicodeString::fromUTF8(icu::StringPiece(name.data(), static_cast<std::int32_t>(name.size())));
  icu::RegexMatcher match(icu::UnicodeString(R"(^(.*?)\s+(\d+)$)"), input, 0, status);
  // A search finds a number before a line break at the end as well; only one that ends the name counts.
  if (!match.find(status) || match.start(status) != 0 || match.end(status) != input.length())
    return std::nullopt;
  std::string stem;
  std::string digits;
  match.group(1, status).toUTF8String(stem);
  match.group(2, status).toUTF8String(digits);
  std::int64_t number = 0;
  const auto* end = digits.data() + digits.size();
  const auto parsed = std::from_chars(digits.data(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return text::TrailingNumber{stem, number};
}

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
        result += values.find(key)->text;
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

void tryConfiguration(std::string_view input) {
  std::optional<AppConfigItem> config;
  try {
    config = decodeConfig(input);
  } catch (const DecodingError& error) {
    check(text::isValidUTF8(error.what()), "an error can be shown");
    return;
  }
  const auto document = encodeConfig(*config);
  check(decodeConfig(document) == *config, "what is written is what was read");
}

void tryNames(std::string_view input) {
  static test::TestPlatform platform;
  const auto [base, extension] = TemplateEngine::parseFilenameComponents(input);
  check(base + extension == text::trimWhitespaceAndNewlines(input), "the parts are the whole");
  check(extension.empty() || extension.rfind('.') == 0, "an extension has one dot");

  if (text::isValidUTF8(input)) {
    check(text::splitTrailingNumber(input) == byExpression(input),
          "a number is split off as the expression says");
  }

  // A folder in which all names are taken but those that end in 7.
  platform.files.imaginedEntries = [&](std::string_view name) {
    return !TemplateEngine::parseFilenameComponents(name).base.ends_with('7');
  };
  const auto free = TemplateEngine::resolveCollision(platform.folder.url(), std::string(input));
  if (!platform.files.imaginedEntries(free)) return;
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(platform.clock.now().time_since_epoch());
  check(free.find(" " + std::to_string(seconds.count())) != std::string::npos,
        "a name that may be taken bears the moment");
}

void tryRendering(std::string_view input) {
  static const test::TestPlatform platform;
  TemplateItem item;
  item.filenamePattern = takeField(input);
  item.extensionName = takeField(input);
  const auto typedName = takeField(input);
  const auto folder = takeField(input);
  item.content = input;

  const auto date = platform.clock.now();
  const auto [name, content, isUnicode] = TemplateEngine::render(item, typedName, folder, std::nullopt, date);
  auto values = makePlaceholderValues(folder, std::nullopt, date);
  values.set("filename", name);
  values.set("name", TemplateEngine::parseFilenameComponents(name).base);
  check(content == filledIn(item.content, values), "each placeholder is filled in once");
  check(!isUnicode || !text::isValidUTF8(input) || text::isValidUTF8(content), "Unicode stays Unicode");
  if (!text::trimWhitespaceAndNewlines(typedName).empty()) {
    check(name.starts_with(text::trimWhitespaceAndNewlines(typedName)), "a typed name stays");
  } else {
    check(name == TemplateEngine::renderSuggestedFilename(item, folder, std::nullopt, date),
          "without a typed name the suggested one is taken");
  }
}

}  // namespace sprig::fuzz
