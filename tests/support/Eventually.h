// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace sprig::test {

/// How long tests wait for what must happen: long enough for a loaded machine under a sanitizer.
inline constexpr std::chrono::seconds deadline{20};

/// Whether `condition` comes true before the deadline; for conditions that nobody announces.
template <typename Condition>
bool eventually(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::yield();
  }
  return true;
}

/// Counts what happens on other threads.
///
/// Threads: any.
class Tally {
 public:
  void add() {
    const std::lock_guard guard(lock);
    ++number;
    changed.notify_all();
  }

  /// Whether the count gets to `target` before the deadline.
  bool reaches(int target) {
    std::unique_lock guard(lock);
    return changed.wait_for(guard, deadline, [&] { return number >= target; });
  }

  int count() {
    const std::lock_guard guard(lock);
    return number;
  }

 private:
  std::mutex lock;
  std::condition_variable changed;
  int number = 0;  // guarded by lock
};

}  // namespace sprig::test
