// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <csignal>

#include "ports/linux/Descriptor.h"
#include "ports/linux/LinuxMainQueue.h"

namespace sprig::terminal {

/// Waits for what may happen while the user is asked for a line. Signals are taken as events as long as this
/// lives, so that the terminal can be put in order before they have their way; a signal that ends programs
/// has it when this goes.
///
/// Threads: main thread; the signals must be blocked in all others.
class InputWait {
 public:
  enum class Event {
    /// Standard input can be read, or has ended.
    input,
    /// Work waits in the main queue.
    work,
    /// Ctrl-C.
    interrupted,
    /// Ctrl-Z: put the terminal in order and call `suspend`.
    stopped,
    resized,
    /// A signal will end the program as soon as this goes.
    terminated,
  };

  explicit InputWait(const ports::LinuxMainQueue& queue);
  ~InputWait();
  InputWait(const InputWait&) = delete;
  InputWait& operator=(const InputWait&) = delete;

  Event next();

  /// Stops the program as Ctrl-Z does; returns when it goes on.
  void suspend();

 private:
  Event takeSignal();

  const ports::LinuxMainQueue& mainQueue;
  sigset_t before = {};
  ports::Descriptor signals;
  int deadlySignal = 0;
};

}  // namespace sprig::terminal
