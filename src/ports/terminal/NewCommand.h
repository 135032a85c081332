// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>

#include "config/AppConfigItem.h"
#include "finder/MenuState.h"
#include "platform/FileURL.h"
#include "platform/Menu.h"
#include "ports/terminal/CommandLine.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/TerminalPlatform.h"

namespace sprig::terminal {

/// `sprig new`: a file from a named template, without a question.
class NewCommand {
 public:
  NewCommand(TerminalPlatform& platform, NewRequest what) : terminal(platform), request(std::move(what)) {}

  ExitStatus run();

 private:
  /// Tells what would be created.
  ExitStatus plan(const TemplateItem& item, const platform::FileURL& folder) const;
  std::optional<platform::MenuItem> picked(const MenuState& state) const;
  void printUnknownTemplate() const;

  TerminalPlatform& terminal;
  const NewRequest request;
};

}  // namespace sprig::terminal
