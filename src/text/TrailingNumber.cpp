// SPDX-License-Identifier: GPL-3.0-or-later

#include "text/TrailingNumber.h"

#include <charconv>

#include "text/Text.h"

namespace sprig::text {

namespace {

std::optional<std::int64_t> parseDigits(std::string_view digits) {
  std::int64_t number = 0;
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (parsed.ec != std::errc()) return std::nullopt;
  return number;
}

std::string_view withoutWhitespaceAtEnd(std::string_view text) {
  const auto trimmed = trimWhitespaceAndNewlines(text);
  const auto length = trimmed.empty() ? 0 : trimmed.data() + trimmed.size() - text.data();
  return text.substr(0, static_cast<std::size_t>(length));
}

bool hasLineBreak(std::string_view text) {
  for (const std::string_view lineBreak : {"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"}) {
    if (text.find(lineBreak) != std::string_view::npos) return true;
  }
  return false;
}

}  // namespace

std::optional<TrailingNumber> splitTrailingNumber(std::string_view text) {
  if (!isValidUTF8(text)) return std::nullopt;
  const auto digitsBegin = text.find_last_not_of("0123456789") + 1;  // npos + 1 is 0
  const auto number = parseDigits(text.substr(digitsBegin));
  const auto stem = withoutWhitespaceAtEnd(text.substr(0, digitsBegin));
  if (!number || stem.size() == digitsBegin || hasLineBreak(stem)) return std::nullopt;
  return TrailingNumber{std::string(stem), *number};
}

}  // namespace sprig::text
