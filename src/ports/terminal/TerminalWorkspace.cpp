// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/TerminalWorkspace.h"

#include <unistd.h>

#include "config/ConfigManager.h"
#include "platform/Platform.h"
#include "ports/terminal/StandardStreams.h"
#include "translation/translated.h"

namespace sprig::terminal {

namespace {

std::string whereSettingsAre() {
  const auto file = ConfigManager::configURL();
  if (platform::current().files.fileExists(file)) {
    return translated(
        "Your templates and settings are in\n  %1%\nChange them with any editor; the next menu follows.",
        {file.path()});
  }
  return translated(
      "You have no configuration file yet, so the built-in templates are offered.\n"
      "“sprig config init” writes them to a file for you to edit.");
}

/// A terminal would obey the control characters of a name; a program gets the very bytes.
std::string printable(const std::string& path) {
  const Screen standardOutput(STDOUT_FILENO);
  return standardOutput.isTerminal() ? standardOutput.text(path) : path;
}

}  // namespace

void TerminalWorkspace::activateFileViewerSelecting(const std::vector<platform::FileURL>& files) {
  for (const auto& file : files) {
    revealed = true;
    if (writeFully(STDOUT_FILENO, printable(file.path()) + "\n")) continue;
    failedToPrint = true;
    output.printError(translated("created %1%, but can't print that: %2%", {file.path(), lastErrorText()}));
  }
}

bool TerminalWorkspace::open(const std::string& url) {
  if (url != "sprig://settings") return false;
  static_cast<void>(output.write("\n" + output.paragraphs(whereSettingsAre(), 0)));
  return true;
}

}  // namespace sprig::terminal
