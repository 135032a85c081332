// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/Platform.h"

#include <atomic>
#include <cassert>

namespace sprig::platform {

namespace {
// The one thing that every part of the product reaches without being given it.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<Platform*> inForce = nullptr;
}  // namespace

Platform& current() {
  Platform* platform = inForce.load(std::memory_order_acquire);
  assert(platform != nullptr);
  return *platform;
}

PlatformScope::PlatformScope(Platform& platform) : previous(inForce.exchange(&platform)) {}

PlatformScope::~PlatformScope() { inForce.store(previous); }

}  // namespace sprig::platform
