// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "filemanagers/client/ExtensionClient.h"

namespace sprig::filemanagers {

/// Where a click comes from in a program that does not say in which window a menu is shown: the program's
/// active window, which is that of the open menu. Threads: main thread.
ClickOrigin clickOriginInActiveWindow();

}  // namespace sprig::filemanagers
