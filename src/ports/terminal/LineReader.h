// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "ports/linux/LinuxMainQueue.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// What the user is asked.
struct LineRequest {
  /// Stands before the line; displayable.
  std::string prompt;
  /// What the line holds at first, for the user to edit or confirm.
  std::string text;
  /// Where in `text` the cursor stands, in bytes.
  std::size_t cursor = 0;
  /// Asked after each piece of main-queue work: whether the answer is no longer wanted. Empty: never.
  std::function<bool()> isOver = {};
};

/// Asks the user for one line, running the main queue meanwhile.
///
/// Threads: main thread.
class LineReader {
 public:
  virtual ~LineReader() = default;

  /// The line without its end. Nothing when the user cancels, when there is no more input, or when the answer
  /// is no longer wanted.
  virtual std::optional<std::string> read(const LineRequest& request) = 0;

  /// With line editing where the user sits at a terminal, else plain lines. Both arguments outlive it.
  static std::unique_ptr<LineReader> make(ports::LinuxMainQueue& queue, const Screen& screen);
};

}  // namespace sprig::terminal
