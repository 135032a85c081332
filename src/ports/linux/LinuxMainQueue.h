// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/MainQueue.h"
#include "ports/linux/Descriptor.h"

namespace sprig::ports {

/// The main queue of a process, for main loops that wait on descriptors.
///
/// Threads:   made on the main thread; `run` and `runPending` are called there, also by the work they run.
/// Ownership: work that has not run when the queue goes is dropped; whoever waits in `sync` for it returns.
/// Failure:   throws `std::system_error` when no descriptor can be had for it.
class LinuxMainQueue final : public platform::MainQueue {
 public:
  LinuxMainQueue();

  bool isMainThread() const override;
  void async(Work work) override;
  void sync(Work work) override;

  /// Readable exactly while work waits. For poll and for event loops; never read it.
  int descriptor() const { return readable.get(); }

  /// Runs the work that waits now, not the work which that submits.
  void runPending();

  /// Runs work, waiting for more of it, until `until` is true. Asked at first and after each piece of work.
  void run(const std::function<bool()>& until);

 private:
  bool runOne();

  const std::thread::id mainThread = std::this_thread::get_id();
  Descriptor readable;
  std::mutex lock;
  std::deque<Work> waiting;  // guarded by lock
};

}  // namespace sprig::ports
