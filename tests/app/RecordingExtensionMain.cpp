// SPDX-License-Identifier: GPL-3.0-or-later

// A runner that makes the principal object, prints what it saw, and fails: the entry point must not pass its
// status on.

#include <cstdio>

#include "platform/ExtensionMain.h"
#include "support/TestPlatform.h"

namespace sprig::platform {

int ExtensionMain(int argumentCount, char** arguments, PrincipalClass principalClass) {
  test::TestPlatform platform;
  const auto principal = principalClass();
  std::printf("%d arguments, last %s; toolbar %s\n", argumentCount, arguments[argumentCount - 1],
              principal->toolbarItemName().c_str());
  return 7;
}

}  // namespace sprig::platform
