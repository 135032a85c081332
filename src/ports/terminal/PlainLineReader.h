// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ports/terminal/InputWait.h"
#include "ports/terminal/LineReader.h"

namespace sprig::terminal {

/// Lines from a pipe or file. The offered text is shown in brackets, and an empty line takes it. Not a byte
/// beyond the line is read, so that what follows is left to the next reader.
class PlainLineReader final : public LineReader {
 public:
  PlainLineReader(ports::LinuxMainQueue& queue, const Screen& screen) : mainQueue(queue), output(screen) {}

  std::optional<std::string> read(const LineRequest& request) override;

 private:
  /// What became of the line so far.
  enum class Progress { goesOn, complete, ended };

  void show(const LineRequest& request) const;
  Progress handle(InputWait& wait, std::string& line, const LineRequest& request) const;
  static Progress takeByte(std::string& line);

  ports::LinuxMainQueue& mainQueue;
  const Screen& output;
};

}  // namespace sprig::terminal
