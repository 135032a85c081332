// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace sprig::filemanagers {

/// The URI of the folder or file itself where a file manager tells of it by a place of its own: the desktop,
/// as Caja and Nemo draw it, is the user's desktop folder. `uri` may be null: the result is empty then.
std::string locationUri(const char* uri);

}  // namespace sprig::filemanagers
