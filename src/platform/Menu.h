// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Action.h"
#include "platform/Image.h"

namespace sprig::platform {

struct Menu;

/// One entry of a menu: plain data that the product fills in and a port draws.
struct MenuItem {
  enum class Kind { entry, separator };

  Kind kind = Kind::entry;
  std::string title;
  /// Names the entry for its target; absent for entries that are not told apart.
  std::optional<std::string> identifier;
  Selector action;
  MenuTarget* target = nullptr;
  std::string keyEquivalent;
  bool isEnabled = true;
  std::optional<Image> image;
  /// Null for an entry without a submenu.
  std::unique_ptr<Menu> submenu;

  static MenuItem separator();
  static MenuItem titled(std::string title);

  /// Whether they are drawn and act alike, submenus included.
  friend bool operator==(const MenuItem& left, const MenuItem& right);
};

/// A titled list of entries, in the order shown.
struct Menu {
  std::string title;
  std::vector<MenuItem> items;

  friend bool operator==(const Menu&, const Menu&) = default;
};

inline bool operator==(const MenuItem& left, const MenuItem& right) {
  const bool haveEqualSubmenus =
      left.submenu && right.submenu ? *left.submenu == *right.submenu : left.submenu == right.submenu;
  return haveEqualSubmenus && left.kind == right.kind && left.title == right.title &&
         left.identifier == right.identifier && left.action == right.action && left.target == right.target &&
         left.keyEquivalent == right.keyEquivalent && left.isEnabled == right.isEnabled &&
         left.image == right.image;
}

inline MenuItem MenuItem::separator() {
  MenuItem item;
  item.kind = Kind::separator;
  return item;
}

inline MenuItem MenuItem::titled(std::string title) {
  MenuItem item;
  item.title = std::move(title);
  return item;
}

}  // namespace sprig::platform
