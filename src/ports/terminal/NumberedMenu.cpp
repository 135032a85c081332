// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/NumberedMenu.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "text/Text.h"

namespace sprig::terminal {

using platform::Menu;
using platform::MenuItem;

namespace {

using Rows = std::vector<NumberedMenu::Row>;

bool canBePicked(const MenuItem& item) {
  return item.kind == MenuItem::Kind::entry && item.isEnabled && (item.submenu || item.action);
}

std::string folded(std::string_view text) {
  return text::canonicalForm(text::lowercased(text::trimWhitespaceAndNewlines(text)));
}

template <typename Fits>
Rows filtered(const Rows& rows, Fits fits) {
  Rows result;
  std::copy_if(rows.begin(), rows.end(), std::back_inserter(result),
               [&](const auto& row) { return fits(*row.item); });
  return result;
}

Rows matchingTitles(const Rows& rows, std::string_view input) {
  auto same = filtered(rows, [&](const MenuItem& item) {
    return text::isEqual(text::trimWhitespaceAndNewlines(item.title), input);
  });
  if (same.size() == 1) return same;
  const auto wanted = folded(input);
  same = filtered(rows, [&](const MenuItem& item) { return folded(item.title) == wanted; });
  if (!same.empty()) return same;
  return filtered(rows, [&](const MenuItem& item) { return folded(item.title).starts_with(wanted); });
}

/// What can be picked below a row, without submenus.
void collectInside(const MenuItem& entry, Rows& result) {
  if (!entry.submenu) return;
  for (const auto& item : entry.submenu->items) {
    if (canBePicked(item) && !item.submenu) result.push_back({&item, 0});
    collectInside(item, result);
  }
}

}  // namespace

const Menu& entriesOf(const Menu& contextMenu) {
  const auto& items = contextMenu.items;
  return items.size() == 1 && items.front().submenu ? *items.front().submenu : contextMenu;
}

NumberedMenu::NumberedMenu(const Menu& menu) {
  std::size_t number = 0;
  for (const auto& item : menu.items) rows.push_back({&item, canBePicked(item) ? ++number : 0});
}

std::vector<NumberedMenu::Row> NumberedMenu::matches(std::string_view input) const {
  Rows pickable;
  std::copy_if(rows.begin(), rows.end(), std::back_inserter(pickable),
               [](const Row& row) { return row.number != 0; });
  std::size_t number = 0;
  const auto* end = input.data() + input.size();
  const auto parsed = std::from_chars(input.data(), end, number);
  if (parsed.ec == std::errc() && parsed.ptr == end && number >= 1 && number <= pickable.size()) {
    return {pickable[number - 1]};
  }
  auto found = matchingTitles(pickable, input);
  if (!found.empty()) return found;
  Rows inside;
  for (const auto& row : pickable) collectInside(*row.item, inside);
  return matchingTitles(inside, input);
}

}  // namespace sprig::terminal
