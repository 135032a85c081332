// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

namespace sprig::settings {

/// Has the user choose a file or folder in the desktop's own dialog, and calls the function with it; not if
/// the user cancels. `name` is what a file to save is called at first, and the path of the folder that is
/// shown at first where a folder is chosen; empty for none.
///
/// Threads: main thread. Requires: `parent` is in a window, which outlives the dialog with all that the
/// function uses.
void chooseInDialog(GtkWidget* parent, const char* title, GtkFileChooserAction action,
                    const std::string& name, std::function<void(GFile*)> chosen);

}  // namespace sprig::settings
