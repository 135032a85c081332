// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/DataOutput.h"

#include <unistd.h>

#include <cerrno>

#include "ports/terminal/StandardStreams.h"
#include "translation/translated.h"

namespace sprig::terminal {

ExitStatus printData(std::string_view data, const Screen& errors) {
  if (writeFully(STDOUT_FILENO, data)) return ExitStatus::success;
  // A reader that has seen enough needs no explanation.
  if (errno != EPIPE) errors.printError(translated("can't write to standard output: %1%", {lastErrorText()}));
  return ExitStatus::failed;
}

}  // namespace sprig::terminal
