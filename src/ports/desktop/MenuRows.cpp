#include "ports/desktop/MenuRows.h"

#include <algorithm>

#include "finder/ContextMenu.h"
#include "ports/linux/SymbolIcons.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

using platform::Menu;
using platform::MenuItem;
using wire::Row;

namespace {

/// The text as the bus can carry it: UTF-8 without NUL.
std::string carried(const std::string& text) {
  const wire::TextPointer valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
  return valid.get();
}

std::string actionName(const MenuItem& item) {
  if (!item.action || !item.isEnabled) return {};
  if (item.action == openSettingsActionSelector) return "settings";
  return "template:" + carried(item.identifier.value_or(item.title));
}

Row rowOf(const MenuItem& item, std::int32_t parent) {
  Row row;
  row.parent = parent;
  if (item.kind == MenuItem::Kind::separator) {
    row.type = Row::Type::separator;
    return row;
  }
  if (item.submenu) row.type = Row::Type::submenu;
  row.title = carried(item.title);
  row.isEnabled = item.isEnabled;
  if (item.image) {
    row.icon = ports::iconName(item.image->symbolName).value_or("");
    row.description = carried(item.image->accessibilityDescription);
  }
  return row;
}

class Flattener {
 public:
  explicit Flattener(MenuRows& menuRows) : result(menuRows) {}

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

  MenuRows& result;
  std::map<std::string, std::size_t> timesSeen;
};

/// Leaves out rows, so that what remains is within the bounds.
class Trimmer {
 public:
  explicit Trimmer(MenuRows& menuRows) : menu(menuRows), isKept(menu.rows.size(), true) {}

  void trim() {
    std::size_t count = menu.rows.size();
    std::size_t bytes = 0;
    for (const auto& row : menu.rows) bytes += wire::byteSize(row);
    for (auto index = menu.rows.size(); index-- > 0 && (count > wire::maxRows || bytes > wire::maxBytes);) {
      const auto& row = menu.rows[index];
      if (!row.action.starts_with("template:")) continue;
      isKept[index] = false;
      menu.entries.erase(row.action);
      ++menu.leftOut;
      --count;
      bytes -= wire::byteSize(row);
    }
    if (menu.leftOut == 0) return;
    dropEmptySubmenus();
    compact();
  }

 private:
  void dropEmptySubmenus() {
    std::vector<bool> hasChildren(menu.rows.size(), false);
    for (auto index = menu.rows.size(); index-- > 0;) {
      const auto& row = menu.rows[index];
      if (row.type == Row::Type::submenu && !hasChildren[index]) isKept[index] = false;
      if (isKept[index] && row.parent != Row::noParent)
        hasChildren[static_cast<std::size_t>(row.parent)] = true;
    }
  }

  void compact() {
    std::vector<Row> kept;
    std::vector<std::int32_t> newIndex(menu.rows.size(), Row::noParent);
    for (std::size_t index = 0; index < menu.rows.size(); ++index) {
      if (!isKept[index]) continue;
      auto& row = menu.rows[index];
      newIndex[index] = static_cast<std::int32_t>(kept.size());
      if (row.parent != Row::noParent) row.parent = newIndex[static_cast<std::size_t>(row.parent)];
      kept.push_back(std::move(row));
    }
    menu.rows = std::move(kept);
  }

  MenuRows& menu;
  std::vector<bool> isKept;
};

}  // namespace

MenuRows menuRows(const Menu& menu) {
  MenuRows result;
  Flattener(result).add(menu, Row::noParent);
  Trimmer(result).trim();
  return result;
}

}  // namespace sprig::desktop
