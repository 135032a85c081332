// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig::terminal {

/// What the program tells the shell that called it.
enum class ExitStatus {
  /// A file was created or taken back, or what was asked for was printed.
  success = 0,
  /// The user left the menu or the prompt, or there was nothing to undo.
  cancelled = 1,
  /// The command line made no sense, or named something that isn't there.
  wrongUse = 2,
  /// Something could not be done; standard error says what.
  failed = 3,
};

}  // namespace sprig::terminal
