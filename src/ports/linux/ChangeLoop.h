// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/FileChangeSource.h"
#include "platform/FileURL.h"
#include "ports/linux/Descriptor.h"
#include "ports/linux/InotifyWatch.h"

namespace sprig::ports {

/// The background thread behind all file-change sources, and their state.
///
/// Threads:   any, but `end` is not called on the background thread. Handlers are called, and destroyed,
///            without the lock, so they may do anything with sources.
/// Ownership: shared by the sources, which may outlive the thread.
class ChangeLoop {
 public:
  using Handler = platform::FileChangeSource::Handler;

  /// One source. Guarded by the loop's lock.
  struct Source {
    /// Null once the source is closed.
    std::unique_ptr<InotifyWatch> watch;
    /// Null before delivery begins and after it has ended.
    std::shared_ptr<Handler> handler;
    /// Events taken from the kernel that the handler has not been called for.
    std::size_t undelivered = 0;
    bool isCancelled = false;
  };

  ChangeLoop();

  /// Makes the last calls that are due, then ends the thread. Called once.
  void end();

  /// A source that collects events from now on; null when `location` can't be watched.
  std::shared_ptr<Source> add(const platform::FileURL& location, platform::FileEvents events);
  void resume(const std::shared_ptr<Source>& source, Handler handler);
  void cancel(const std::shared_ptr<Source>& source);
  void asyncAfter(std::chrono::milliseconds delay, Handler task);

 private:
  using Time = std::chrono::steady_clock::time_point;
  struct Task {
    Time due;
    Handler handler;
  };

  void run();
  /// Milliseconds until the next task is due, as `epoll_wait` takes them: -1 for none.
  int timeToNextTask();
  std::vector<Handler> takeDueTasks();
  void runTasks(const std::vector<Handler>& due);
  void deliverReady();
  void deliverLastCalls();
  void deliver(const std::shared_ptr<Source>& source);
  void closeCancelled();
  bool isOnBackgroundThread();
  bool isEndReached();

  /// Ends a cancelled source: takes the last events, closes the watch, and arranges the last call. Returns a
  /// handler that is no longer needed, to be dropped without the lock. Requires: the lock is held.
  [[nodiscard]] std::shared_ptr<Handler> closeSource(const std::shared_ptr<Source>& source);

  // Those below require the lock.

  /// The instance for all watches, made when it can be.
  bool hasInotify();
  std::unique_ptr<InotifyWatch> startWatch(const platform::FileURL& location, platform::FileEvents events);
  /// Notes every event that has come for the sources it is for.
  void takeEvents();
  void note(const inotify_event& event);
  void noteMounts();
  /// Removes a mark that no source shares.
  void release(int mark);
  void wakeUp();

  const Descriptor epoll;
  const Descriptor wake;
  const Descriptor mounts;  // closed where there is no such table
  std::mutex lock;
  // All that follows but the thread is guarded by lock.
  Descriptor inotify;
  std::vector<std::shared_ptr<Source>> sources;
  std::vector<Task> tasks;
  /// Cancelled by a handler, which may yet make their successors.
  std::vector<std::shared_ptr<Source>> cancelledByHandlers;
  std::vector<std::shared_ptr<Source>> lastCalls;
  std::thread::id backgroundThread;
  bool isEnding = false;
  std::thread thread;
};

}  // namespace sprig::ports
