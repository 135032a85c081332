#include "text/TrailingNumber.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <charconv>
#include <memory>

#include "text/Text.h"

namespace sprig::text {

namespace {

const icu::RegexPattern* trailingNumberPattern() {
  static const std::unique_ptr<icu::RegexPattern> pattern = [] {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<icu::RegexPattern>(
        icu::RegexPattern::compile(icu::UnicodeString(R"(^(.*?)\s+(\d+)$)"), 0, status));
  }();
  return pattern.get();
}

std::string group(const icu::RegexMatcher& match, int number) {
  UErrorCode status = U_ZERO_ERROR;
  std::string result;
  match.group(number, status).toUTF8String(result);
  return result;
}

std::optional<std::int64_t> parseASCIIDigits(const std::string& digits) {
  std::int64_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto parsed = std::from_chars(digits.data(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
  return number;
}

}  // namespace

std::optional<TrailingNumber> splitTrailingNumber(std::string_view text) {
  if (!isValidUTF8(text) || trailingNumberPattern() == nullptr) return std::nullopt;
  const auto input =
      icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::RegexMatcher> match(trailingNumberPattern()->matcher(input, status));
  if (U_FAILURE(status) || !match->matches(status) || U_FAILURE(status)) return std::nullopt;
  const auto number = parseASCIIDigits(group(*match, 2));
  if (!number) return std::nullopt;
  return TrailingNumber{group(*match, 1), *number};
}

}  // namespace sprig::text
