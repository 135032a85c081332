// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Workspace.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// Reveals a file by printing its path on standard output, where `$EDITOR "$(sprig)"` picks it up, and opens
/// the settings by saying where they are.
class TerminalWorkspace final : public platform::Workspace {
 public:
  explicit TerminalWorkspace(const Screen& screen) : output(screen) {}

  void activateFileViewerSelecting(const std::vector<platform::FileURL>& files) override;
  bool open(const std::string& url) override;

  /// Whether a file was revealed, whatever became of printing its path.
  bool hasRevealedFile() const { return revealed; }
  /// Whether a path could not be printed; the user has been told.
  bool hasFailedToPrint() const { return failedToPrint; }

 private:
  const Screen& output;
  bool revealed = false;
  bool failedToPrint = false;
};

}  // namespace sprig::terminal
