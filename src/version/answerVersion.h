// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig {

/// Answers the argument `--version`, if it is the first one: prints the program's name and version on
/// standard output. Comes before all that a program needs, so that it works without a display or a bus.
///
/// Returns: whether it has answered; the program is to end then.
bool answerVersion(const char* program, int argumentCount, char** arguments);

}  // namespace sprig
