// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/MenuEntry.h"

#include <cstddef>
#include <set>
#include <string_view>

#include "wire/shortened.h"

namespace sprig::filemanagers {

using wire::Row;

namespace {

bool isPlain(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '-';
}

/// Plain characters stay, any other byte becomes "_" and two digits: different texts stay different.
std::string plainName(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string name;
  for (const char character : text) {
    if (isPlain(character)) {
      name += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    name += {'_', digits[byte / 16U], digits[byte % 16U]};
  }
  return name;
}

MenuEntry::Type typeOf(const Row& row) {
  switch (row.type) {
    case Row::Type::separator:
      return MenuEntry::Type::separator;
    case Row::Type::submenu:
      return MenuEntry::Type::submenu;
    default:
      return MenuEntry::Type::item;
  }
}

/// Takes rows in their order and puts them together level by level.
class Assembly {
 public:
  explicit Assembly(const std::vector<Row>& menuRows) : rows(menuRows) {}

  /// The entries below a row; begins at the row after it.
  std::vector<MenuEntry> entriesOf(std::int32_t parent) {
    std::vector<MenuEntry> entries;
    while (next < rows.size() && rows[next].parent == parent) {
      const auto index = next++;
      auto entry = entryFor(rows[index]);
      if (entry.type == MenuEntry::Type::submenu) {
        entry.children = entriesOf(static_cast<std::int32_t>(index));
        if (entry.children.empty()) continue;
      }
      const bool separates = !entries.empty() && entries.back().type != MenuEntry::Type::separator;
      if (entry.type != MenuEntry::Type::separator || separates) entries.push_back(std::move(entry));
    }
    if (!entries.empty() && entries.back().type == MenuEntry::Type::separator) entries.pop_back();
    return entries;
  }

 private:
  MenuEntry entryFor(const Row& row) {
    MenuEntry entry;
    entry.type = typeOf(row);
    entry.name = uniqueName(row);
    entry.title = row.title;
    entry.action = row.action;
    entry.icon = row.icon;
    entry.isEnabled = row.isEnabled;
    return entry;
  }

  std::string uniqueName(const Row& row) {
    const auto own = row.action.empty() ? "menu-" + plainName(row.title) : "action-" + plainName(row.action);
    auto name = "sprig-" + own;
    // "__" is in no plain name, so a number never makes another entry's name.
    for (std::size_t number = 2; !names.insert(name).second; ++number) {
      name = "sprig-" + own + "__" + std::to_string(number);
    }
    return name;
  }

  const std::vector<Row>& rows;
  std::size_t next = 0;
  std::set<std::string> names;
};

}  // namespace

std::string escapeMnemonics(const MenuEntry& entry, char mark) {
  constexpr std::size_t maxCharacters = 60;
  std::string label;
  for (const char character : wire::shortened(entry.title, maxCharacters)) {
    if (character == mark) label += mark;
    label += character;
  }
  return label;
}

MenuEntries entriesFromRows(const std::vector<Row>& rows) {
  return std::make_shared<const std::vector<MenuEntry>>(Assembly(rows).entriesOf(Row::noParent));
}

}  // namespace sprig::filemanagers
