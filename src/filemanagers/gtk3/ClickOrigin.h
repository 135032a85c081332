// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>

#include "filemanagers/client/ExtensionClient.h"

namespace sprig::filemanagers {

/// Tells, when an item is picked, of the window that a menu was shown in. `window` may be null, and may be
/// gone by then. Threads: main thread.
std::function<ClickOrigin()> clickOriginIn(GtkWidget* window);

}  // namespace sprig::filemanagers
