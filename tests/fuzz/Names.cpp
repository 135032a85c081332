// SPDX-License-Identifier: GPL-3.0-or-later

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <charconv>
#include <chrono>
#include <optional>
#include <string>

#include "engine/TemplateEngine.h"
#include "fuzz/Check.h"
#include "fuzz/Targets.h"
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

}  // namespace

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

}  // namespace sprig::fuzz
