// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sprig::terminal {

/// The command line makes no sense.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The arguments of one command: the options every command has, those it adds, and operands.
///
/// Operands are read here and not by the option parser, which takes "[a,b]" for a list and any operand that
/// is called like a command for that command.
class CommandArguments {
 public:
  CommandArguments();

  void addFlag(const std::string& name, bool& value) { parser.add_flag(name, value); }
  void addOption(const std::string& name, std::optional<std::string>& value) {
    parser.add_option(name, value);
  }

  /// Throws `UsageError`.
  void parse(std::vector<std::string> arguments);

  bool wantsHelp() const { return help; }
  bool wantsVersion() const { return version; }
  bool isVerbose() const { return verbose; }

  /// Throws `UsageError` when there are too few or too many.
  const std::vector<std::string>& operands(std::size_t fewest, std::size_t most) const;
  /// The operand at `index`, if there are so many.
  std::optional<std::string> operand(std::size_t index) const;

 private:
  CLI::App parser;
  bool help = false;
  bool version = false;
  bool verbose = false;
  std::vector<std::string> operandList;
};

}  // namespace sprig::terminal
