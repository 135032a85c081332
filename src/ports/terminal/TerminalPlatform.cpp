// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/TerminalPlatform.h"

#include <unistd.h>

#include "ports/linux/InotifyFileChangeSources.h"
#include "ports/terminal/NoFileChangeSources.h"
#include "translation/translated.h"

namespace sprig::terminal {

namespace {

std::unique_ptr<platform::FileChangeSources> sourcesFor(ConfigChanges changes) {
  if (changes == ConfigChanges::ignored) return std::make_unique<NoFileChangeSources>();
  return std::make_unique<ports::InotifyFileChangeSources>();
}

}  // namespace

TerminalPlatform::TerminalPlatform(Logging logging, ConfigChanges changes)
    : standardError(STDERR_FILENO),
      reader(LineReader::make(mainQueue, standardError)),
      systemLog(logging, mainQueue, standardError),
      workspace(standardError),
      alerts(mainQueue, *reader, standardError),
      scope(services),
      fileChanges(sourcesFor(changes)),
      services{files,   users,     process,   clock,  systemLog, mainQueue, *fileChanges,
               volumes, workspace, creations, images, alerts,    target} {}

ExitStatus TerminalPlatform::outcomeOfPick() {
  runPending();
  if (workspace.hasRevealedFile()) {
    return workspace.hasFailedToPrint() ? ExitStatus::failed : ExitStatus::success;
  }
  if (alerts.hasShownAlert()) return ExitStatus::failed;
  if (alerts.hasCancelledQuestion()) return ExitStatus::cancelled;
  standardError.printError(translated("nothing was created; ~/.kestrel/sprig/extension.log says why"));
  return ExitStatus::failed;
}

}  // namespace sprig::terminal
