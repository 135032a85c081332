// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

namespace sprig {

/// Reports progress or trouble: one line to the system's log and one, with the time in UTC, appended to
/// ".kestrel/sprig/extension.log" below the home folder that the user database records.
///
/// `message` is complete and is written as it is.
///
/// Threads: any; lines of concurrent calls may come in either order. Failure: never; what can't be written is
/// lost.
void logSprig(std::string_view message);

/// What stands before every line in the system's log.
inline constexpr std::string_view systemLogPrefix = "[SprigFinder] ";

}  // namespace sprig
