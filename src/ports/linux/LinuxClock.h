// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Clock.h"

namespace sprig::ports {

/// The system's clock and time zone; a change of zone is noticed while the program runs.
class LinuxClock final : public platform::Clock {
 public:
  platform::Instant now() const override;
  platform::DateComponents components(platform::Instant instant) const override;
};

}  // namespace sprig::ports
