// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>

namespace sprig::bench {

/// Runs from when it is made. For what a benchmark times itself, as it has to clean up in between.
class Timer {
 public:
  double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  }

 private:
  const std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
};

}  // namespace sprig::bench
