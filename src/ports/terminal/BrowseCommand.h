// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/FIFinderSync.h"
#include "ports/terminal/CommandLine.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/TerminalPlatform.h"

namespace sprig::terminal {

/// `sprig [FOLDER]` and `sprig FILE...`: the menu, a pick, a new file.
class BrowseCommand {
 public:
  BrowseCommand(TerminalPlatform& platform, BrowseRequest what)
      : terminal(platform), request(std::move(what)) {}

  ExitStatus run();

 private:
  /// What the menu is about; how the program ends when there is no such thing.
  std::optional<ExitStatus> setTargets();
  std::optional<ExitStatus> setItems();
  std::string heading() const;
  ExitStatus pickAndCreate();

  TerminalPlatform& terminal;
  const BrowseRequest request;
  platform::FIMenuKind kind = platform::FIMenuKind::contextualMenuForContainer;
};

}  // namespace sprig::terminal
