// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/MainQueue.h"
#include "platform/SystemLog.h"
#include "ports/linux/LinuxSystemLog.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

enum class Logging {
  /// The system's log alone, and where there is none, nowhere: the terminal belongs to the user.
  quiet,
  /// Standard error as well.
  verbose,
};

/// The system's log, also shown to a user who asks for it. Lines of other threads are shown by the main
/// thread, so that they don't tear apart a line being edited.
class TerminalSystemLog final : public platform::SystemLog {
 public:
  TerminalSystemLog(Logging logging, platform::MainQueue& queue, const Screen& screen)
      : way(logging), mainQueue(queue), output(screen) {}

  void log(std::string_view line) override;

 private:
  const Logging way;
  platform::MainQueue& mainQueue;
  const Screen& output;
  ports::LinuxSystemLog system{"sprig", ports::SystemLogFallback::none};
};

}  // namespace sprig::terminal
