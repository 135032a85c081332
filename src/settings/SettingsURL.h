// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sprig::settings {

/// What a URL wants to be shown.
struct SettingsTarget {
  /// The template to edit; absent: the list of templates. There may be no such template.
  std::optional<std::string> templateId;
  friend bool operator==(const SettingsTarget&, const SettingsTarget&) = default;
};

/// Understands "sprig://settings" and "sprig://settings/templates/ID", in all the spellings that desktops
/// make of them. Nothing for any other text: anybody can put a URL in front of the user.
///
/// Threads: any.
std::optional<SettingsTarget> parseSettingsURL(std::string_view url);

}  // namespace sprig::settings
