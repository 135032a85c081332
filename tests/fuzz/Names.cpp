#include <chrono>
#include <string>

#include "engine/TemplateEngine.h"
#include "fuzz/Check.h"
#include "fuzz/Targets.h"
#include "support/TestPlatform.h"
#include "text/Text.h"
#include "text/TrailingNumber.h"

namespace sprig::fuzz {

void tryNames(std::string_view input) {
  static test::TestPlatform platform;
  const auto [base, extension] = TemplateEngine::parseFilenameComponents(input);
  check(base + extension == text::trimWhitespaceAndNewlines(input), "the parts are the whole");
  check(extension.empty() || extension.rfind('.') == 0, "an extension has one dot");

  if (const auto trailing = text::splitTrailingNumber(input)) {
    check(input.starts_with(trailing->stem) && trailing->number >= 0,
          "a numbered name has its stem and number");
    check(input.ends_with(std::to_string(trailing->number)), "the number stands at the end");
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
