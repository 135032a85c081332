// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <string>

#include "filemanagers/client/FileSelection.h"

namespace sprig::filemanagers {

/// Whether a widget is what Nemo and Caja show icons in, also as a compact list, and on the desktop.
bool isIconContainer(GtkWidget* widget);

/// Selects a file in such a widget by way of what it tells a screen reader, scrolls to it and gives it the
/// focus.
FileSelection::State selectIcon(GtkWidget* container, const std::string& uri);

}  // namespace sprig::filemanagers
