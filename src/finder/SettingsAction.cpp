// SPDX-License-Identifier: GPL-3.0-or-later

#include "finder/SettingsAction.h"

#include "diag/logSprig.h"
#include "platform/Platform.h"

namespace sprig {

void performOpenSettingsAction() {
  logSprig("openSettingsAction invoked");
  static_cast<void>(platform::current().workspace.open("sprig://settings"));
}

}  // namespace sprig
