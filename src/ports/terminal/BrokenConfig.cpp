// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/BrokenConfig.h"

#include "config/ConfigManager.h"

namespace sprig::terminal {

void warnOfBrokenConfig(const Screen& errors) {
  const auto problem = ConfigManager::shared().problem();
  if (!problem) return;
  errors.printError("the configuration file can't be used (" + *problem +
                    "), so there are the built-in templates; “sprig config check” tells more");
}

}  // namespace sprig::terminal
