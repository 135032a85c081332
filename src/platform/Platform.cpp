// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/Platform.h"

#include <atomic>
#include <cassert>

namespace sprig::platform {

namespace {
// The one thing that every part of the product reaches without being given it.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<Platform*> currentPlatform = nullptr;
}  // namespace

Platform& current() {
  Platform* platform = currentPlatform.load(std::memory_order_acquire);
  assert(platform != nullptr);
  return *platform;
}

PlatformScope::PlatformScope(Platform& platform) : previous(currentPlatform.exchange(&platform)) {}

PlatformScope::~PlatformScope() { currentPlatform.store(previous); }

}  // namespace sprig::platform
