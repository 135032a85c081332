// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/LinuxClock.h"

#include <chrono>
#include <ctime>

namespace sprig::ports {

platform::Instant LinuxClock::now() const {
  std::timespec time = {};
  ::clock_gettime(CLOCK_REALTIME, &time);
  return platform::Instant(std::chrono::seconds(time.tv_sec)) +
         std::chrono::floor<std::chrono::microseconds>(std::chrono::nanoseconds(time.tv_nsec));
}

platform::DateComponents LinuxClock::components(platform::Instant instant) const {
  const std::time_t time = std::chrono::floor<std::chrono::seconds>(instant).time_since_epoch().count();
  std::tm local = {};
  // localtime_r alone would keep the zone the program started in.
  ::tzset();
  ::localtime_r(&time, &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

}  // namespace sprig::ports
