// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace sprig::desktop {

/// The click in a file manager that a pick came from.
struct Click {
  /// The bus connection of the file manager; empty for none.
  std::string sender;
  /// What lets the next window take the focus; empty for none.
  std::string activationToken;
  /// The file manager's window, "x11:<hexadecimal id>" or "wayland:<exported handle>"; empty for none.
  std::string parentWindow;
  /// The name of the file manager's executable file; empty where it isn't known.
  std::string program;
};

}  // namespace sprig::desktop
