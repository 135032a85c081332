// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "ports/linux/Creation.h"
#include "ports/terminal/CommandLine.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/TerminalPlatform.h"

namespace sprig::terminal {

/// `sprig undo`: takes the newest creation back, whichever of Sprig's programs it is from, or lists them.
class UndoCommand {
 public:
  UndoCommand(TerminalPlatform& platform, UndoRequest what) : terminal(platform), request(what) {}

  ExitStatus run();

 private:
  ExitStatus undo(const ports::Creation& creation);
  ExitStatus refuse(const ports::Creation& creation, ports::CreationState state);
  static std::string lineFor(const ports::Creation& creation);

  TerminalPlatform& terminal;
  const UndoRequest request;
};

}  // namespace sprig::terminal
