// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "config/ConfigEditor.h"
#include "ports/terminal/CommandLine.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/TerminalPlatform.h"

namespace sprig::terminal {

/// `sprig template`: shows and changes the templates of the configuration, disabled ones included.
class TemplateCommand {
 public:
  TemplateCommand(TerminalPlatform& platform, TemplateRequest what)
      : terminal(platform), request(std::move(what)) {}

  ExitStatus run();

 private:
  ExitStatus list() const;
  ExitStatus show() const;
  ExitStatus exportTemplates() const;
  ExitStatus add() const;
  ExitStatus addSharedIn(const platform::FileURL& file) const;
  ExitStatus importFolder() const;
  ExitStatus addWith(const ConfigEditor::Change& change) const;
  ExitStatus edit() const;
  ExitStatus save(const TemplateKey& key, const std::string& old, const std::string& edited) const;
  ExitStatus change() const;
  void changeOne(ConfigDocument& document, std::size_t index) const;
  ExitStatus outcomeOf(const tl::expected<ConfigDocument, ConfigEditError>& result) const;
  ExitStatus refuse(const std::string& reason, ExitStatus status = ExitStatus::failed) const;
  std::string listing(const AppConfigItem& config) const;

  TerminalPlatform& terminal;
  const TemplateRequest request;
};

}  // namespace sprig::terminal
