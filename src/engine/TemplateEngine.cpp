// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/TemplateEngine.h"

#include <chrono>
#include <limits>

#include "engine/Placeholders.h"
#include "text/Text.h"
#include "text/TrailingNumber.h"

namespace sprig {

namespace {

constexpr std::int64_t firstNumber = 2;
constexpr std::int64_t highestNumber = 9999;

/// The name with the template's extension, unless it has that one or any other already.
std::string completeExtension(std::string name, const std::string& extension) {
  if (extension.empty() || name.ends_with(extension) || name.find('.') != std::string::npos) return name;
  if (extension.front() != '.') name += '.';
  return name + extension;
}

/// Sets the "name" of `values`.
std::string suggestedFilename(const TemplateItem& item, PlaceholderValues& values) {
  constexpr std::string_view untitled = "Untitled";
  auto pattern = text::trimWhitespaceAndNewlines(item.filenamePattern);
  if (pattern.empty()) pattern = untitled;
  values.set("name", std::string(untitled));
  return completeExtension(substitutePlaceholders(pattern, values).text, item.extensionName);
}

std::string numbered(const std::string& stem, std::int64_t number, const std::string& extension) {
  return stem + " " + std::to_string(number) + extension;
}

}  // namespace

RenderedTemplate TemplateEngine::render(const TemplateItem& item, const std::optional<std::string>& userName,
                                        const std::optional<std::string>& folderName,
                                        const std::optional<std::string>& projectName,
                                        platform::Instant date) {
  auto values = makePlaceholderValues(folderName, projectName, date);
  const std::string typed(text::trimWhitespaceAndNewlines(userName.value_or("")));
  auto filename =
      typed.empty() ? suggestedFilename(item, values) : completeExtension(typed, item.extensionName);
  values.set("name", parseFilenameComponents(filename).base);
  values.set("filename", filename);
  auto content = substitutePlaceholders(item.content, values);
  return {std::move(filename), std::move(content.text), content.hasUnicodeValues};
}

std::string TemplateEngine::renderSuggestedFilename(const TemplateItem& item,
                                                    const std::optional<std::string>& folderName,
                                                    const std::optional<std::string>& projectName,
                                                    platform::Instant date) {
  auto values = makePlaceholderValues(folderName, projectName, date);
  return suggestedFilename(item, values);
}

FilenameComponents TemplateEngine::parseFilenameComponents(std::string_view filename) {
  const std::string name(text::trimWhitespaceAndNewlines(filename));
  const auto dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0) return {name, ""};
  return {name.substr(0, dot), name.substr(dot)};
}

std::string TemplateEngine::resolveCollision(const platform::FileURL& folderURL,
                                             const std::string& filename) {
  const auto& platform = platform::current();
  const auto folder = platform.files.openFolder(folderURL);
  if (!folder->hasEntry(filename)) return filename;

  const auto [base, extension] = parseFilenameComponents(filename);
  std::string stem = base;
  std::int64_t first = firstNumber;
  const auto trailing = text::splitTrailingNumber(base);
  if (trailing && trailing->number < std::numeric_limits<std::int64_t>::max()) {
    stem = trailing->stem;
    first = trailing->number + 1;
  }
  for (auto number = first; number <= highestNumber; ++number) {
    auto candidate = numbered(stem, number, extension);
    if (!folder->hasEntry(candidate)) return candidate;
  }
  const auto sinceEpoch =
      std::chrono::duration_cast<std::chrono::seconds>(platform.clock.now().time_since_epoch());
  return numbered(stem, sinceEpoch.count(), extension);
}

std::string TemplateEngine::formatTwoDigits(std::int64_t value) {
  auto digits = std::to_string(value);
  if (digits.size() < 2) digits.insert(0, "0");
  return digits;
}

}  // namespace sprig
