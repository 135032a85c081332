// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/OfferedMenus.h"

#include <stdexcept>
#include <utility>
#include <vector>

#include "diag/logSprig.h"
#include "finder/ContextMenu.h"
#include "platform/Platform.h"
#include "ports/desktop/FlatMenu.h"
#include "wire/Rows.h"

namespace sprig::desktop {

using platform::MenuItem;
using wire::VariantPointer;

namespace {

void logTemplatesLeftOut(std::size_t number) {
  platform::current().systemLog.log(std::string(systemLogPrefix) + "The menu has no room for the last " +
                                    std::to_string(number) + " templates");
}

VariantPointer rowBytes(const std::vector<wire::Row>& rows) {
  auto bytes = wire::rowsToVariant(rows);
  if (!bytes) throw std::runtime_error("the menu can't be sent: " + bytes.error());
  return std::move(*bytes);
}

}  // namespace

VariantPointer OfferedMenus::rows(const MenuContext& context) {
  controller.setTarget(context.kind, context.target);
  auto menu = extension.menu(context.kind);
  if (!menu) return rowBytes({});
  if (!lastMenu || *menu != *lastMenu) {
    lastRows = rowsOf(*menu);
    lastMenu = std::move(menu);
  }
  return VariantPointer(g_variant_ref(lastRows.get()));
}

VariantPointer OfferedMenus::rowsOf(const platform::Menu& menu) {
  const auto flat = flattened(menu);
  if (flat.leftOut > 0 && !std::exchange(hasLoggedLeftOut, true)) logTemplatesLeftOut(flat.leftOut);
  for (const auto& [action, item] : flat.entries) {
    offered.insert_or_assign(action, Entry{item->title, rowTitle(*item), item->identifier});
  }
  return rowBytes(flat.rows);
}

bool OfferedMenus::isAction(std::string_view action) {
  return action == settingsAction || action.starts_with(templateActionPrefix);
}

void OfferedMenus::perform(const std::string& action, const std::string& title, const MenuContext& context) {
  controller.setTarget(context.kind, context.target);
  const auto sender = picked(action, title);
  extension.performAction(sender.action, sender);
}

MenuItem OfferedMenus::picked(const std::string& action, const std::string& title) const {
  auto item = MenuItem::titled(title);
  if (action == settingsAction) {
    item.action = openSettingsActionSelector;
    return item;
  }
  item.action = templateActionSelector;
  const auto entry = offered.find(action);
  // The menu may come from a process before this one; then its names have to do.
  item.identifier =
      entry != offered.end() ? entry->second.identifier : action.substr(templateActionPrefix.size());
  if (entry != offered.end() && (title.empty() || title == entry->second.shownTitle)) {
    item.title = entry->second.title;
  }
  return item;
}

}  // namespace sprig::desktop
