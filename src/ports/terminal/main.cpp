// SPDX-License-Identifier: GPL-3.0-or-later

#include <unistd.h>
#include <clocale>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "ports/linux/handleFileSizeSignal.h"
#include "ports/terminal/BrowseCommand.h"
#include "ports/terminal/CommandLine.h"
#include "ports/terminal/ConfigCommand.h"
#include "ports/terminal/DataOutput.h"
#include "ports/terminal/DetectCommand.h"
#include "ports/terminal/ListCommand.h"
#include "ports/terminal/NewCommand.h"
#include "ports/terminal/Screen.h"
#include "ports/terminal/StandardStreams.h"
#include "ports/terminal/TemplateCommand.h"
#include "ports/terminal/TerminalPlatform.h"
#include "ports/terminal/UndoCommand.h"
#include "translation/translated.h"

namespace sprig::terminal {

namespace {

/// Runs the command that a request is for.
class Runner {
 public:
  explicit Runner(const CommandLine& line) : platform(line.logging, changesFor(line)) {}

  ExitStatus operator()(const BrowseRequest& request) { return BrowseCommand(platform, request).run(); }
  ExitStatus operator()(const ListRequest& request) { return ListCommand(platform, request).run(); }
  ExitStatus operator()(const NewRequest& request) { return NewCommand(platform, request).run(); }
  ExitStatus operator()(const DetectRequest& request) { return DetectCommand(platform, request).run(); }
  ExitStatus operator()(const ConfigRequest& request) { return ConfigCommand(platform, request).run(); }
  ExitStatus operator()(const TemplateRequest& request) { return TemplateCommand(platform, request).run(); }
  ExitStatus operator()(const UndoRequest& request) { return UndoCommand(platform, request).run(); }
  ExitStatus operator()(const TextRequest& request) { return printData(request.text, platform.screen()); }

 private:
  static ConfigChanges changesFor(const CommandLine& line) {
    const bool staysOpen = std::holds_alternative<BrowseRequest>(line.request);
    return staysOpen ? ConfigChanges::followed : ConfigChanges::ignored;
  }

  TerminalPlatform platform;
};

ExitStatus run(std::vector<std::string> arguments) {
  const Screen errors(STDERR_FILENO);
  try {
    const auto commandLine = parseCommandLine(std::move(arguments));
    if (!commandLine) {
      errors.printError(translated("%1%; see “sprig --help”", {commandLine.error()}));
      return ExitStatus::wrongUse;
    }
    return std::visit(Runner(*commandLine), commandLine->request);
  } catch (const std::bad_alloc&) {
    errors.printError(translated("there is not enough memory for this"));
    return ExitStatus::failed;
  } catch (const std::exception& error) {
    errors.printError(error.what());
    return ExitStatus::failed;
  }
}

}  // namespace

}  // namespace sprig::terminal

int main(int argumentCount, char** arguments) {
  std::setlocale(LC_ALL, "");  // NOLINT(concurrency-mt-unsafe): there are no other threads yet
  sprig::ports::handleFileSizeSignal();
  sprig::terminal::openMissingStandardStreams();
  return static_cast<int>(
      sprig::terminal::run({argumentCount > 0 ? arguments + 1 : arguments, arguments + argumentCount}));
}
