// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ProcessInfo.h"

namespace sprig::ports {

/// The process's environment; programs are activated cooperatively, as Linux desktops do.
class LinuxProcessInfo final : public platform::ProcessInfo {
 public:
  std::optional<std::string> environment(std::string_view variable) const override;
  platform::OperatingSystemVersion operatingSystemVersion() const override { return {14, 0, 0}; }
};

}  // namespace sprig::ports
