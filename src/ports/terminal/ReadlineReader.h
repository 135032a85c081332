// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "ports/terminal/InputWait.h"
#include "ports/terminal/LineReader.h"

namespace sprig::terminal {

/// Lines edited with the keys people know from their shell, as their readline configuration says. Ctrl-D
/// and Ctrl-C cancel, whatever the line holds. All of readline's own state is used here and nowhere else.
///
/// Requires: one object in a process; reads don't nest.
class ReadlineReader final : public LineReader {
 public:
  ReadlineReader(ports::LinuxMainQueue& queue, const Screen& screen);
  ReadlineReader(const ReadlineReader&) = delete;
  ReadlineReader& operator=(const ReadlineReader&) = delete;

  std::optional<std::string> read(const LineRequest& request) override;

 private:
  /// What the user has answered so far.
  struct Answer {
    bool isComplete = false;
    bool isCancelled = false;
    std::string line;
  };

  // Called by readline, which knows no context of its callers.
  static void takeLine(char* line);
  static int readByte(FILE* stream);
  static int cancel(int count, int key);
  static int ignore(int count, int key);

  void handle(InputWait& wait, const LineRequest& request);
  void runWork(const LineRequest& request);
  static void abandon();

  ports::LinuxMainQueue& mainQueue;
  /// The answer to the line being read; readline's callbacks, which get no context, reach it through this.
  // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
  static Answer* current;
};

}  // namespace sprig::terminal
