// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

namespace sprig::terminal {

/// Has the user edit a text in the editor of their choice (`$VISUAL`, `$EDITOR`, else `editor` or `vi`), in a
/// private temporary file, which goes afterwards.
///
/// Threads: main thread; returns when the editor has ended. Failure: absent, with a sentence without a full
///          stop in `problem`.
std::optional<std::string> editedText(const std::string& text, std::string& problem);

}  // namespace sprig::terminal
