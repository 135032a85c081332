// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>

namespace sprig::platform {

/// Microseconds since 1970. Nanoseconds, which the system's clock counts, end in April 2262.
using Instant = std::chrono::sys_time<std::chrono::microseconds>;

/// A date and a time of day on the user's calendar. `month` and `day` count from 1, `hour` from 0 to 23.
struct DateComponents {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

/// The wall clock and the user's calendar (Gregorian, local time zone).
///
/// Threads: any. Failure: none; a time before 1970 is negative.
class Clock {
 public:
  virtual ~Clock() = default;

  virtual Instant now() const = 0;

  virtual DateComponents components(Instant instant) const = 0;
};

}  // namespace sprig::platform
