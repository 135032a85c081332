#pragma once

#include <chrono>

namespace sprig::platform {

using Instant = std::chrono::system_clock::time_point;

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
/// Threads: any.
class Clock {
 public:
  virtual ~Clock() = default;

  virtual Instant now() const = 0;

  virtual DateComponents components(Instant instant) const = 0;
};

}  // namespace sprig::platform
