// SPDX-License-Identifier: GPL-3.0-or-later

#include <optional>

#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"
#include "fuzz/Check.h"
#include "fuzz/Targets.h"
#include "text/Text.h"

namespace sprig::fuzz {

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

}  // namespace sprig::fuzz
