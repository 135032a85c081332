// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sprig::wire {

/// The absolute path that a file URI stands for; any byte but NUL may occur in it. Nothing for anything but a
/// local file's URI: other schemes, relative ones, with a host, with a fragment, with broken escapes or
/// escaped "/" or NUL, or a path longer than the system can use.
///
/// Threads: any. Touches no file.
std::optional<std::string> pathFromUri(std::string_view uri);

/// Whether a path is that of a folder, or of something in it at any depth; judged by the names alone. A path
/// that goes up by ".." is in no folder.
///
/// Threads: any.
bool isInFolder(std::string_view path, std::string_view folder);

/// The URI of a path; nothing for one that is relative or holds NUL. Threads: any.
std::optional<std::string> uriFromPath(std::string_view path);

}  // namespace sprig::wire
