// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib.h>

#include <chrono>
#include <functional>
#include <utility>

namespace sprig::desktop {

/// Calls once, in the main context, when it has run for its time without being stopped.
///
/// Threads: main thread.
class IdleTimer {
 public:
  IdleTimer(std::chrono::milliseconds idleTime, std::function<void()> isOver)
      : time(idleTime), callback(std::move(isOver)) {}
  ~IdleTimer() { stop(); }
  IdleTimer(const IdleTimer&) = delete;
  IdleTimer& operator=(const IdleTimer&) = delete;

  /// Starts from the beginning.
  void start() {
    stop();
    source = g_timeout_add(static_cast<guint>(time.count()), fired, this);
  }

  void stop() {
    if (source != 0) g_source_remove(std::exchange(source, 0));
  }

 private:
  static gboolean fired(void* self) noexcept {
    auto& timer = *static_cast<IdleTimer*>(self);
    timer.source = 0;
    timer.callback();
    return G_SOURCE_REMOVE;
  }

  const std::chrono::milliseconds time;
  const std::function<void()> callback;
  guint source = 0;
};

}  // namespace sprig::desktop
