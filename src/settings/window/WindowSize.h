// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

namespace sprig::settings {

/// Gives a window the size that the last one had, or else `width` and `height`, in pixels.
///
/// Threads: main thread.
void restoreSize(GtkWindow* window, int width, int height);

/// Remembers a window's size for the next one. It stays as it was remembered if it can't be written.
///
/// Threads: main thread.
void rememberSize(GtkWindow* window);

}  // namespace sprig::settings
