#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "platform/Menu.h"
#include "wire/Rows.h"

namespace sprig::desktop {

/// A menu as file managers get it, and the entries behind its actions.
struct MenuRows {
  std::vector<wire::Row> rows;
  /// The entries belong to the menu that the rows were made from.
  std::map<std::string, const platform::MenuItem*, std::less<>> entries;
  /// How many templates there was no room for.
  std::size_t leftOut = 0;
};

/// The rows of a menu, within the bounds of the bus: when there are too many templates, the last ones are
/// left out. Actions are named after what they do and to what, so the same menu built again has the same
/// ones.
///
/// Threads: main thread, as menus.
MenuRows menuRows(const platform::Menu& menu);

}  // namespace sprig::desktop
