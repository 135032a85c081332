// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileURL.h"

namespace sprig::terminal {

/// Moves a file to the user's trash, with the program `gio`, and waits for that. False when there is no trash
/// for it or no such program; then the file is where it was.
bool moveToTrash(const platform::FileURL& file);

}  // namespace sprig::terminal
