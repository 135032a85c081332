// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "platform/FileURL.h"

namespace sprig::terminal {

/// A path from the command line, made absolute by the path the user knows the current folder under (`$PWD`):
/// links are not resolved unless ".." would otherwise lead somewhere else than the system says. Nothing when
/// the path is relative and the current folder is gone.
std::optional<platform::FileURL> absoluteLocation(const std::string& path);

/// The current folder; nothing when it is gone.
std::optional<platform::FileURL> currentFolder();

/// What a path from the command line stands for; a link without a target is an item, too.
enum class PathKind { missing, folder, item };
PathKind kindOf(const std::string& path);

}  // namespace sprig::terminal
