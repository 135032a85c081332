// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib.h>

#include <chrono>
#include <functional>

namespace sprig::settings {

/// Calls a function once after a while, unless it is stopped or started again before.
///
/// Threads:   main thread.
/// Ownership: a call that has not been made yet goes with this.
class DelayedCall {
 public:
  explicit DelayedCall(std::function<void()> call);
  ~DelayedCall();
  DelayedCall(const DelayedCall&) = delete;
  DelayedCall& operator=(const DelayedCall&) = delete;

  /// Without a delay the call comes before the window is drawn next.
  void start(std::chrono::milliseconds delay);
  void stop();
  bool isStarted() const { return source != 0; }

 private:
  const std::function<void()> function;
  guint source = 0;
};

}  // namespace sprig::settings
