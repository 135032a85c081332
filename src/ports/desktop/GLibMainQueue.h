// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/MainQueue.h"
#include "ports/linux/LinuxMainQueue.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

/// The main queue of a program that runs GLib's default main context: work runs in every loop on it, nested
/// ones included.
///
/// Threads:   made and destroyed on the main thread.
/// Ownership: work that has not run when the queue goes is dropped; whoever waits in `sync` for it returns.
/// Failure:   throws `std::system_error` when no descriptor can be had for it.
class GLibMainQueue final : public platform::MainQueue {
 public:
  GLibMainQueue();
  ~GLibMainQueue() override;
  GLibMainQueue(const GLibMainQueue&) = delete;
  GLibMainQueue& operator=(const GLibMainQueue&) = delete;

  bool isMainThread() const override { return queue.isMainThread(); }
  void async(Work work) override { queue.async(std::move(work)); }
  void sync(Work work) override { queue.sync(std::move(work)); }

  /// Runs the work that waits now, not the work which that submits. Main thread.
  void runPending() { queue.runPending(); }

 private:
  ports::LinuxMainQueue queue;
  std::unique_ptr<GSource, wire::Releaser<g_source_unref>> source;
};

}  // namespace sprig::desktop
