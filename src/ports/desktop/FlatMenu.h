// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Menu.h"
#include "wire/Rows.h"

namespace sprig::desktop {

/// A menu as file managers get it, and the entries behind its actions.
struct FlatMenu {
  std::vector<wire::Row> rows;
  /// The entries belong to the menu that the rows were made from.
  std::map<std::string, const platform::MenuItem*, std::less<>> entries;
  /// How many templates there was no room for.
  std::size_t leftOut = 0;
};

/// What the actions of templates begin with, and that of the settings.
inline constexpr std::string_view templateActionPrefix = "template:";
inline constexpr std::string_view settingsAction = "settings";

/// A text as rows have it: UTF-8 without NUL, and cut in the middle when it is too long for one.
std::string rowText(const std::string& text);

/// What users read as the entry's title, in their language.
std::string rowTitle(const platform::MenuItem& item);

/// The rows of a menu, within the bounds of the bus: when there are too many templates, the last ones are
/// left out. Actions are named after what they do and to what, so the same menu built again has the same
/// ones.
///
/// Threads: main thread, as menus.
FlatMenu flattened(const platform::Menu& menu);

}  // namespace sprig::desktop
