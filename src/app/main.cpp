// SPDX-License-Identifier: GPL-3.0-or-later

#include <memory>

#include "app/FinderSync.h"
#include "platform/ExtensionMain.h"

int main(int argumentCount, char** arguments) {
  sprig::platform::ExtensionMain(argumentCount, arguments,
                                 []() -> std::unique_ptr<sprig::platform::FIFinderSync> {
                                   return std::make_unique<sprig::FinderSync>();
                                 });
  return 0;
}
