// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>

#include "config/AppConfigItem.h"

namespace sprig {

/// How many templates stand in the menu itself if nothing else is set.
inline constexpr std::int64_t defaultVisibleTemplates = 10;

/// How many of `count` enabled templates stand in the menu itself; the others are under "More Templates".
///
/// Threads: any.
inline std::size_t visibleCount(const AppSettingsItem& settings, std::size_t count) {
  const auto configured = settings.maxVisibleTemplates.value_or(defaultVisibleTemplates);
  const auto limit = configured < 0 ? defaultVisibleTemplates : configured;
  return static_cast<std::uint64_t>(limit) < count ? static_cast<std::size_t>(limit) : count;
}

}  // namespace sprig
