// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <string>

namespace sprig::filemanagers {

/// The icon to draw for one that an entry names: that, or a document where the icon theme doesn't have it.
/// Null for no icon. Lives as long as `icon`. Threads: main thread.
const char* themedIcon(const std::string& icon);

/// The same for a theme other than the one of the file manager.
const char* themedIcon(GtkIconTheme& theme, const std::string& icon);

}  // namespace sprig::filemanagers
