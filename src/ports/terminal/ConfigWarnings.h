// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "config/AppConfigItem.h"
#include "config/JsonIndex.h"

namespace sprig::terminal {

/// Something in a configuration that works, but hardly as its writer meant it.
struct ConfigWarning {
  std::vector<JsonStep> place;
  /// Names the value and says what comes of it.
  std::string text;
};

/// In the order of the templates.
std::vector<ConfigWarning> warningsOf(const AppConfigItem& config);

}  // namespace sprig::terminal
