// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/TerminalSystemLog.h"

#include <string>

namespace sprig::terminal {

void TerminalSystemLog::log(std::string_view line) {
  system.log(line);
  if (way == Logging::quiet) return;
  auto show = [this, shown = output.styled(output.text(line), Style::dim) + "\n"] {
    static_cast<void>(output.write(shown));
  };
  if (mainQueue.isMainThread()) {
    show();
  } else {
    mainQueue.async(std::move(show));
  }
}

}  // namespace sprig::terminal
