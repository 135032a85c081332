// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/LinuxProcessInfo.h"

#include <cstdlib>

namespace sprig::ports {

std::optional<std::string> LinuxProcessInfo::environment(std::string_view variable) const {
  // Safe: the programs never set a variable. NOLINTNEXTLINE(concurrency-mt-unsafe)
  const char* value = std::getenv(std::string(variable).c_str());
  if (value == nullptr) return std::nullopt;
  return value;
}

}  // namespace sprig::ports
