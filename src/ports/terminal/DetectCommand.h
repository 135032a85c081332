// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ports/terminal/CommandLine.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/TerminalPlatform.h"

namespace sprig::terminal {

/// `sprig detect`: the project types of a folder, sorted, one a line.
class DetectCommand {
 public:
  DetectCommand(TerminalPlatform& platform, DetectRequest what)
      : terminal(platform), request(std::move(what)) {}

  ExitStatus run();

 private:
  TerminalPlatform& terminal;
  const DetectRequest request;
};

}  // namespace sprig::terminal
