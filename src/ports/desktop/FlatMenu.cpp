// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/FlatMenu.h"

#include <algorithm>

#include "config/BuiltinTemplates.h"
#include "finder/ContextMenu.h"
#include "ports/linux/SymbolIcons.h"
#include "wire/Interface.h"
#include "wire/Pointers.h"
#include "wire/shortened.h"

namespace sprig::desktop {

using platform::Menu;
using platform::MenuItem;
using wire::Row;

namespace {

std::string actionName(const MenuItem& item) {
  if (!item.action || !item.isEnabled) return {};
  if (item.action == openSettingsActionSelector) return std::string(settingsAction);
  return rowText(std::string(templateActionPrefix) + item.identifier.value_or(item.title));
}

std::string iconOf(const platform::Image& image) {
  auto name = ports::iconName(image.symbolName).value_or("");
  return name.size() <= wire::maxTextBytes ? name : wire::documentIcon;
}

Row rowOf(const MenuItem& item, std::int32_t parent) {
  Row row;
  row.parent = parent;
  if (item.kind == MenuItem::Kind::separator) {
    row.type = Row::Type::separator;
    return row;
  }
  if (item.submenu) row.type = Row::Type::submenu;
  row.title = rowTitle(item);
  row.isEnabled = item.isEnabled;
  if (item.image) {
    row.icon = iconOf(*item.image);
    row.description = rowText(item.image->accessibilityDescription);
  }
  return row;
}

class Flattener {
 public:
  explicit Flattener(FlatMenu& flattened) : result(flattened) {}

  void add(const Menu& menu, std::int32_t parent) {
    for (const auto& item : menu.items) {
      const auto index = static_cast<std::int32_t>(result.rows.size());
      result.rows.push_back(rowOf(item, parent));
      if (const auto action = actionName(item); !action.empty()) {
        result.rows.back().action = enter(action, item);
      }
      if (item.submenu) add(*item.submenu, index);
    }
  }

 private:
  /// The action's name, told apart from those of the entries before it.
  std::string enter(const std::string& action, const MenuItem& item) {
    auto name = action;
    auto& repeats = timesSeen[action];
    while (!result.entries.emplace(name, &item).second) name = action + "#" + std::to_string(++repeats + 1);
    return name;
  }

  FlatMenu& result;
  std::map<std::string, std::size_t> timesSeen;
};

/// Leaves out rows, so that what remains is within the bounds: the last templates, and with the last one of a
/// submenu that, too.
class Trimmer {
 public:
  explicit Trimmer(FlatMenu& flattened)
      : menu(flattened), isKept(menu.rows.size(), true), children(menu.rows.size()), count(menu.rows.size()) {
    for (const auto& row : menu.rows) {
      bytes += wire::byteSize(row);
      if (row.parent != Row::noParent) ++children[static_cast<std::size_t>(row.parent)];
    }
  }

  void trim() {
    for (auto index = menu.rows.size(); index-- > 0 && (count > wire::maxRows || bytes > wire::maxBytes);) {
      const auto& action = menu.rows[index].action;
      if (!action.starts_with(templateActionPrefix)) continue;
      menu.entries.erase(action);
      ++menu.leftOut;
      drop(index);
    }
    if (menu.leftOut > 0) compact();
  }

 private:
  void drop(std::size_t index) {
    const auto& row = menu.rows[index];
    isKept[index] = false;
    --count;
    bytes -= wire::byteSize(row);
    if (row.parent == Row::noParent) return;
    const auto parent = static_cast<std::size_t>(row.parent);
    if (--children[parent] == 0) drop(parent);
  }

  /// What stood between two separators may have gone.
  static bool separatesNothing(const Row& row, const std::vector<Row>& kept) {
    return row.type == Row::Type::separator && !kept.empty() && kept.back().type == Row::Type::separator &&
           kept.back().parent == row.parent;
  }

  void compact() {
    std::vector<Row> kept;
    std::vector<std::int32_t> newIndex(menu.rows.size(), Row::noParent);
    for (std::size_t index = 0; index < menu.rows.size(); ++index) {
      if (!isKept[index]) continue;
      auto& row = menu.rows[index];
      newIndex[index] = static_cast<std::int32_t>(kept.size());
      if (row.parent != Row::noParent) row.parent = newIndex[static_cast<std::size_t>(row.parent)];
      if (separatesNothing(row, kept)) continue;
      kept.push_back(std::move(row));
    }
    menu.rows = std::move(kept);
  }

  FlatMenu& menu;
  std::vector<bool> isKept;
  std::vector<std::size_t> children;
  std::size_t count;
  std::size_t bytes = 0;
};

}  // namespace

std::string rowText(const std::string& text) {
  constexpr std::size_t charactersOfLongText = 255;
  const wire::TextPointer valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
  const std::string_view carried(valid.get());
  if (carried.size() <= wire::maxTextBytes) return std::string(carried);
  return wire::shortened(carried, charactersOfLongText);
}

std::string rowTitle(const MenuItem& item) {
  return rowText(item.identifier ? displayName(*item.identifier, item.title) : item.title);
}

FlatMenu flattened(const Menu& menu) {
  FlatMenu result;
  Flattener(result).add(menu, Row::noParent);
  Trimmer(result).trim();
  return result;
}

}  // namespace sprig::desktop
