// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/CommandArguments.h"

#include <algorithm>

#include "translation/translated.h"

namespace sprig::terminal {

CommandArguments::CommandArguments() {
  parser.set_help_flag();
  parser.add_flag("-h,--help", help);
  parser.add_flag("--version", version);
  parser.add_flag("-v,--verbose", verbose);
  parser.allow_extras();
}

void CommandArguments::parse(std::vector<std::string> arguments) {
  std::reverse(arguments.begin(), arguments.end());  // as the parser wants a list
  try {
    parser.parse(std::move(arguments));
  } catch (const CLI::ArgumentMismatch& error) {
    const std::string_view message = error.what();
    throw UsageError(translated("%1% needs a value", {message.substr(0, message.find(':'))}));
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  bool areOptionsOver = false;
  for (auto& argument : parser.remaining()) {
    if (!areOptionsOver && argument == "--") {
      areOptionsOver = true;
    } else if (!areOptionsOver && argument.size() > 1 && argument.front() == '-') {
      throw UsageError(translated("unknown option “%1%”", {argument}));
    } else {
      operandList.push_back(std::move(argument));
    }
  }
}

const std::vector<std::string>& CommandArguments::operands(std::size_t fewest, std::size_t most) const {
  if (operandList.size() < fewest) throw UsageError(translated("something is missing"));
  if (operandList.size() > most)
    throw UsageError(translated("don't know what to do with “%1%”", {operandList[most]}));
  if (!operandList.empty() && operandList.front().empty())
    throw UsageError(translated("an argument is empty"));
  return operandList;
}

std::optional<std::string> CommandArguments::operand(std::size_t index) const {
  if (index >= operandList.size()) return std::nullopt;
  return operandList[index];
}

}  // namespace sprig::terminal
