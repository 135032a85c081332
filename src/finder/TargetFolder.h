// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>

#include "platform/FileURL.h"

namespace sprig {

/// The folder that the file manager's selection stands for: its first item if that is a folder, else the
/// item's parent. Nothing without a selection.
std::optional<platform::FileURL> firstSelectedFolder();

/// The user's Desktop folder, whether or not it exists; nothing without an entry in the user database.
std::optional<platform::FileURL> desktopFolder();

}  // namespace sprig
