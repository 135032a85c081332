// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <optional>
#include <string>

namespace sprig::filemanagers {

/// What the window around one of Nemo's or Caja's views tells where the view itself doesn't. Nothing where a
/// window is not as it is known.

/// The URI of the folder, without a slash at its end, as the pane's line for locations has it.
std::optional<std::string> locationAround(GtkWidget* view);

/// Whether hidden files are shown, as the item of the menu bar has it.
std::optional<bool> showsHiddenFiles(GtkWidget* view);

}  // namespace sprig::filemanagers
