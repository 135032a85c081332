// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/LineReader.h"

#include <unistd.h>

#include "ports/terminal/PlainLineReader.h"
#include "ports/terminal/ReadlineReader.h"

namespace sprig::terminal {

std::unique_ptr<LineReader> LineReader::make(ports::LinuxMainQueue& queue, const Screen& screen) {
  if (::isatty(STDIN_FILENO) == 1 && screen.isTerminal()) {
    return std::make_unique<ReadlineReader>(queue, screen);
  }
  return std::make_unique<PlainLineReader>(queue, screen);
}

}  // namespace sprig::terminal
