// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

/// The interface between Sprig and file managers on the session bus; com.kestrel.Sprig.Extension1.xml says
/// what its methods mean.
namespace sprig::wire {

inline constexpr const char* busName = "com.kestrel.Sprig.Extension";
inline constexpr const char* objectPath = "/com/kestrel/Sprig/Extension";
inline constexpr const char* interfaceName = "com.kestrel.Sprig.Extension1";

/// The object that a file manager's module exports; com.kestrel.Sprig.FileManager1.xml says what it does.
inline constexpr const char* fileManagerPath = "/com/kestrel/Sprig/FileManager";
inline constexpr const char* fileManagerInterface = "com.kestrel.Sprig.FileManager1";

/// What a menu is for.
enum class Kind : std::uint32_t { items = 0, background = 1, sidebar = 2, toolbar = 3 };

/// Keys of `platform_data`; all values are strings.
inline constexpr const char* activationTokenKey = "activation-token";
inline constexpr const char* parentWindowKey = "parent-window";
inline constexpr const char* titleKey = "title";

/// What to draw in place of an icon that the icon theme doesn't have: a plain document.
inline constexpr const char* documentIcon = "sprig-doc-text-symbolic";

}  // namespace sprig::wire
