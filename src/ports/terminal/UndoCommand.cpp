// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/UndoCommand.h"

#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>

#include "ports/terminal/DataOutput.h"
#include "ports/terminal/StandardStreams.h"
#include "ports/terminal/moveToTrash.h"
#include "translation/translated.h"

namespace sprig::terminal {

using ports::Creation;
using ports::CreationState;

ExitStatus UndoCommand::run() {
  const auto creations = terminal.journal().creations();
  if (request.task == UndoTask::list) {
    std::string lines;
    for (const auto& creation : creations) lines += lineFor(creation);
    return printData(lines, terminal.screen());
  }
  if (creations.empty()) {
    terminal.screen().printError(translated("there is nothing to undo"));
    return ExitStatus::cancelled;
  }
  return undo(creations.front());
}

ExitStatus UndoCommand::undo(const Creation& creation) {
  const auto state = creation.state();
  if (state != CreationState::untouched) return refuse(creation, state);
  if (!moveToTrash(creation.file)) {
    if (!creation.remove()) {
      const auto reason = lastErrorText();
      const auto stateNow = creation.state();
      if (stateNow != CreationState::untouched) return refuse(creation, stateNow);
      terminal.screen().printError(translated("can't remove %1%: %2%", {creation.file.path(), reason}));
      return ExitStatus::failed;
    }
    terminal.screen().printError(translated("there is no trash for it, so it was removed"));
  }
  terminal.journal().forget(creation);
  return printData(creation.file.path() + "\n", terminal.screen());
}

/// A creation that can't be taken back any more must not stand in the way of those before it.
ExitStatus UndoCommand::refuse(const Creation& creation, CreationState state) {
  terminal.journal().forget(creation);
  terminal.screen().printError(
      translated("%1%, so nothing was done; \"sprig undo\" now goes on with the creation before it",
                 {creation.reasonToKeep(state)}));
  return ExitStatus::failed;
}

std::string UndoCommand::lineFor(const Creation& creation) {
  const auto& identity = creation.identity;
  const auto moment = platform::Instant(std::chrono::seconds(identity.modifiedSeconds));
  const auto date = platform::current().clock.components(moment);
  std::array<char, 64> time = {};
  std::snprintf(time.data(), time.size(), "%04d-%02d-%02d %02d:%02d", date.year, date.month, date.day,
                date.hour, date.minute);
  const auto state = creation.state();
  std::string note;
  if (state != CreationState::untouched) note = "  (" + creation.reasonToKeep(state) + ")";
  return std::string(time.data()) + "  " + Screen(STDOUT_FILENO).text(creation.file.path() + note) + "\n";
}

}  // namespace sprig::terminal
