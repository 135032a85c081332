// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

namespace sprig::platform {

/// Work for the main thread, run in the order it was submitted.
///
/// Threads:   submission from any thread. Work runs on the main thread, whenever the port's main loop or a
///            modal loop (`Application::runModal`) spins.
/// Ownership: the queue owns submitted work until it has run.
/// Failure:   none; work must not throw.
class MainQueue {
 public:
  using Work = std::function<void()>;

  virtual ~MainQueue() = default;

  virtual bool isMainThread() const = 0;

  /// Returns at once; the work runs later, also when called on the main thread.
  virtual void async(Work work) = 0;

  /// Returns when the work has run. Requires: not called on the main thread.
  virtual void sync(Work work) = 0;
};

}  // namespace sprig::platform
