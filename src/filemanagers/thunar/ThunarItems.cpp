// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/thunar/ThunarItems.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "filemanagers/gtk3/themedIcon.h"

namespace sprig::filemanagers {

std::string ThunarMenu::uriOf(void* file) {
  const wire::TextPointer uri(thunarx_file_info_get_uri(static_cast<ThunarxFileInfo*>(file)));
  return uri ? uri.get() : std::string();
}

bool ThunarMenu::shows(const MenuEntry& entry, wire::Kind /*kind*/) {
  if (entry.type == MenuEntry::Type::separator) return false;
  // `thunarx_check_version` takes 4.18 for it, too.
  const std::tuple version(thunarx_major_version, thunarx_minor_version, thunarx_micro_version);
  return entry.isEnabled || version >= std::tuple(4U, 19U, 3U);
}

ThunarxMenuItem* ThunarMenu::newItem(const MenuEntry& entry) {
  auto* item =
      thunarx_menu_item_new(entry.name.c_str(), gtkLabelOf(entry).c_str(), "", themedIcon(entry.icon));
  thunarx_menu_item_set_sensitive(item, entry.isEnabled ? TRUE : FALSE);
  return item;
}

ThunarItems::Menu::Menu(std::shared_ptr<ExtensionClient> client, MenuEntries menuEntries, wire::Kind kind)
    : entries(std::move(menuEntries)), occasion(std::make_shared<MenuOccasion>()) {
  occasion->kind = kind;
  items = MenuItems<ThunarMenu>(std::move(client), occasion).make(*entries);
  for (const auto& item : items) {
    // Of two references the toggling one stays: it tells when it is the only one, and when no longer.
    g_object_add_toggle_ref(G_OBJECT(item.get()), useChanged, this);
    ++itemsInUse;
  }
  for (auto& item : items) g_object_unref(item.get());
}

ThunarItems::Menu::~Menu() {
  for (auto& item : items) g_object_remove_toggle_ref(G_OBJECT(item.release()), useChanged, this);
}

void ThunarItems::Menu::useChanged(void* menu, GObject* /*item*/, gboolean isOnlyOurs) {
  auto& inUse = static_cast<Menu*>(menu)->itemsInUse;
  inUse = isOnlyOurs ? inUse - 1 : inUse + 1;
}

GList* ThunarItems::Menu::lend(MenuOccasion newOccasion) {
  *occasion = std::move(newOccasion);
  GList* list = nullptr;
  for (auto item = items.rbegin(); item != items.rend(); ++item) {
    list = g_list_prepend(list, g_object_ref(item->get()));
  }
  return list;
}

GList* ThunarItems::itemsFor(MenuOccasion occasion) {
  if (occasion.targets.empty()) return nullptr;
  const auto kind = occasion.kind;
  const auto entries = client->menu(kind, occasion.targets.front());
  if (!entries) return nullptr;
  const auto isForOthers = [&](const auto& menu) { return !menu->isFree() || menu->kind() != kind; };
  std::erase_if(menus, [&](const auto& menu) { return !isForOthers(menu) && !menu->shows(entries); });
  auto found = std::find_if_not(menus.begin(), menus.end(), isForOthers);
  if (found == menus.end()) found = menus.insert(found, std::make_unique<Menu>(client, entries, kind));
  return (*found)->lend(std::move(occasion));
}

}  // namespace sprig::filemanagers
