// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib.h>

#include <algorithm>
#include <cstdint>

namespace sprig::desktop {

/// Bounds how often something may happen: so many times at once, and in the long run so many times a second.
///
/// Threads: one.
class CallRate {
 public:
  CallRate(double atOnce, double perSecond) : most(atOnce), rate(perSecond), left(atOnce) {}

  /// Whether it may happen now; if so, it has.
  bool allows() {
    const auto now = g_get_monotonic_time();
    left = std::min(most, left + rate * static_cast<double>(now - before) / G_USEC_PER_SEC);
    before = now;
    if (left < 1) return false;
    --left;
    return true;
  }

 private:
  const double most;
  const double rate;
  double left;
  std::int64_t before = g_get_monotonic_time();
};

}  // namespace sprig::desktop
