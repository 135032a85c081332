// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "platform/FileURL.h"
#include "platform/Menu.h"
#include "ports/terminal/CommandLine.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/TerminalPlatform.h"

namespace sprig::terminal {

/// `sprig list`: what the menu of a folder holds.
class ListCommand {
 public:
  ListCommand(TerminalPlatform& platform, ListRequest what) : terminal(platform), request(std::move(what)) {}

  ExitStatus run();

 private:
  std::string listing(const platform::FileURL& folder, const platform::Menu& entries) const;

  TerminalPlatform& terminal;
  const ListRequest request;
};

}  // namespace sprig::terminal
