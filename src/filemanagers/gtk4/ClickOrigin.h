// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "filemanagers/client/ExtensionClient.h"

namespace sprig::filemanagers {

/// Where a click comes from in a program that does not say in which window a menu is shown: the program's
/// active window, which is that of the open menu. Threads: main thread.
ClickOrigin clickOriginInActiveWindow();

/// Has the compositor give a handle of the active window, which takes a moment, so that clicks in it can tell
/// dialogs where they belong. Does nothing on the X server, or where GTK (before 4.12) gives only one handle
/// away, which the program may want for itself. Threads: main thread.
void prepareClicksInActiveWindow();

}  // namespace sprig::filemanagers
