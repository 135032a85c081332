#include "ports/linux/LinuxClock.h"

#include <chrono>
#include <ctime>

namespace sprig::ports {

platform::DateComponents LinuxClock::components(platform::Instant instant) const {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(instant);
  const std::time_t time = std::chrono::system_clock::to_time_t(seconds);
  std::tm local = {};
  // localtime_r alone would keep the zone the program started in.
  ::tzset();
  ::localtime_r(&time, &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

}  // namespace sprig::ports
