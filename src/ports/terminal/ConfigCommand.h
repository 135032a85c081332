// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

#include "config/ConfigDecoder.h"
#include "platform/FileURL.h"
#include "ports/terminal/CommandLine.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/TerminalPlatform.h"

namespace sprig::terminal {

/// `sprig config path|init|check`: where the configuration is, a first one to edit, what is wrong with one.
class ConfigCommand {
 public:
  ConfigCommand(TerminalPlatform& platform, ConfigRequest what)
      : terminal(platform), request(std::move(what)) {}

  ExitStatus run();

 private:
  ExitStatus path() const;
  ExitStatus init() const;
  ExitStatus check() const;
  ExitStatus checkFile(const std::string& shownName, const platform::FileURL& file) const;
  ExitStatus checkDocument(const std::string& shownName, const std::string& document) const;
  ExitStatus refuse(const std::string& reason) const;
  void warn(const std::string& shownName, const AppConfigItem& config, std::string_view document) const;
  void explain(const std::string& shownName, const DecodingError& problem, std::string_view document) const;

  TerminalPlatform& terminal;
  const ConfigRequest request;
};

}  // namespace sprig::terminal
