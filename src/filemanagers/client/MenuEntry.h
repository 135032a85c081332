// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "wire/Rows.h"

namespace sprig::filemanagers {

/// What the extension is told of an entry that was picked.
struct PickedEntry {
  std::string action;
  std::string title;
};

/// One entry of a menu, ready to become a file manager's own item.
struct MenuEntry {
  enum class Type { item, separator, submenu };

  Type type = Type::item;
  /// Of letters, digits, "-" and "_" only; unique in the menu, and the same in each menu of one
  /// configuration: some managers find a picked entry again by it, and some make the name of a widget or an
  /// action of it.
  std::string name;
  /// As people read it, without mnemonics.
  std::string title;
  std::string action;
  /// A name of the icon theme; empty for none.
  std::string icon;
  bool isEnabled = true;
  std::vector<MenuEntry> children;

  bool operator==(const MenuEntry&) const = default;
};

/// A menu that is shared by those who show it; it never changes.
using MenuEntries = std::shared_ptr<const std::vector<MenuEntry>>;

/// What to label an entry with where `mark`, in a label, stands before the letter that is a mnemonic. A title
/// has none, so each mark in it is doubled. A long title is cut in the middle: as wide as it is, so wide is
/// the whole menu.
std::string escapeMnemonics(const MenuEntry& entry, char mark);

/// The menu that rows describe. Leaves out separators that separate nothing and submenus without entries.
///
/// Requires: the rows are as `wire::Row` says.
MenuEntries entriesFromRows(const std::vector<wire::Row>& rows);

}  // namespace sprig::filemanagers
