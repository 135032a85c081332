// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace sprig::filemanagers {

/// The URI of the folder or file itself where a file manager tells of it by a place of its own: the desktop,
/// as Caja and Nemo draw it, is the user's desktop folder. `uri` may be null: the result is empty then.
std::string locationUri(const char* uri);

/// The URI of the folder that a file is in, as `withoutLastSlash` gives folders.
std::string_view folderOf(std::string_view uri);

/// Whether file managers show the file only where hidden files are shown.
bool isHidden(std::string_view uri);

/// A folder's URI without a slash at its end: "file://" for the root.
std::string_view withoutLastSlash(std::string_view uri);

}  // namespace sprig::filemanagers
