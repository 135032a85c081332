// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/BrokenConfig.h"

#include "config/ConfigManager.h"
#include "translation/translated.h"

namespace sprig::terminal {

void warnOfBrokenConfig(const Screen& errors) {
  const auto problem = ConfigManager::shared().problem();
  if (!problem) return;
  errors.printError(
      translated("the configuration file can't be used (%1%), so there are the built-in templates; “sprig "
                 "config check” tells more",
                 {*problem}));
}

}  // namespace sprig::terminal
