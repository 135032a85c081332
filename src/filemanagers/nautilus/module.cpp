// SPDX-License-Identifier: GPL-3.0-or-later

#include <glib-object.h>
// This one does not say by itself that its functions are C's.
extern "C" {
#include <nautilus-extension.h>
}

#include <memory>
#include <utility>
#include <vector>

#include "filemanagers/client/MenuItems.h"
#include "filemanagers/client/guardCallback.h"
#include "filemanagers/gtk4/ClickOrigin.h"

namespace sprig::filemanagers {

namespace {

/// What submenus list comes after their titles, which stay as headings.
void addFlat(const std::vector<MenuEntry>& entries, std::vector<MenuEntry>& list) {
  for (const auto& entry : entries) {
    list.push_back(entry);
    if (entry.type != MenuEntry::Type::submenu) continue;
    auto& heading = list.back();
    heading.type = MenuEntry::Type::item;
    heading.isEnabled = false;
    heading.children.clear();
    addFlat(entry.children, list);
  }
}

MenuEntries withOneLevel(const MenuEntries& menu) {
  auto entries = *menu;
  for (auto& entry : entries) {
    const auto below = std::exchange(entry.children, {});
    addFlat(below, entry.children);
  }
  return std::make_shared<const std::vector<MenuEntry>>(std::move(entries));
}

/// What `MenuItems` and `urisOf` need to know of GNOME Files, which has no separators and draws no icons.
struct NautilusMenus : MenuTraits {
  using Item = NautilusMenuItem;
  using Submenu = NautilusMenu;

  static std::string uriOf(void* file) {
    const wire::TextPointer uri(nautilus_file_info_get_uri(static_cast<NautilusFileInfo*>(file)));
    return uri ? uri.get() : std::string();
  }
  /// In the folder's menu, one level below it. Its items are also in the menu of the path bar, which is put
  /// together again on every change of the selection; GTK (seen with 4.8 and 4.18) takes only the first level
  /// of submenus away then, so that deeper ones would pile up, and an outdated one be shown.
  static MenuEntries arranged(const MenuEntries& menu, wire::Kind kind) {
    return kind == wire::Kind::background ? withOneLevel(menu) : menu;
  }
  /// GNOME Files knows what to do for an item by the item's name only, the same in both menus: each menu has
  /// names of its own, or a pick in one would be one in the other.
  static Item* newItem(const MenuEntry& entry, wire::Kind kind) {
    const auto name = (kind == wire::Kind::background ? "background-" : "items-") + entry.name;
    return nautilus_menu_item_new(name.c_str(), "", "", nullptr);
  }
  static void show(Item* item, const MenuEntry& entry) { showEntry(item, entry, nullptr); }
  static Submenu* newSubmenu() { return nautilus_menu_new(); }
  static void append(Submenu* submenu, Item* item) { nautilus_menu_append_item(submenu, item); }
  static void setSubmenu(Item* item, Submenu* submenu) { nautilus_menu_item_set_submenu(item, submenu); }
};

GList* itemsFor(NautilusMenuProvider* provider, wire::Kind kind, GList* files) {
  return guardCallback([&] {
    prepareClicksInActiveWindow();
    return menuItems<NautilusMenus>(provider,
                                    {kind, urisOf<NautilusMenus>(files), clickOriginInActiveWindow});
  });
}

GList* fileItems(NautilusMenuProvider* provider, GList* files) {
  return itemsFor(provider, wire::Kind::items, files);
}

GList* backgroundItems(NautilusMenuProvider* provider, NautilusFileInfo* folder) {
  GList files{folder, nullptr, nullptr};
  return itemsFor(provider, wire::Kind::background, &files);
}

void fillMenuProvider(void* functions, void* /*data*/) {
  auto& provider = *static_cast<NautilusMenuProviderInterface*>(functions);
  provider.get_file_items = fileItems;
  provider.get_background_items = backgroundItems;
}

void askAgain(void* provider) {
  nautilus_menu_provider_emit_items_updated_signal(static_cast<NautilusMenuProvider*>(provider));
}

GType providerType() {
  return registerProviderType({"SprigNautilusProvider",
                               {wire::Kind::items, wire::Kind::background},
                               {{NAUTILUS_TYPE_MENU_PROVIDER, fillMenuProvider}},
                               askAgain});
}

}  // namespace

}  // namespace sprig::filemanagers

// What GNOME Files calls in a module, under its names.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

G_MODULE_EXPORT void nautilus_module_initialize(GTypeModule* /*module*/) {
  sprig::filemanagers::providerType();
}

G_MODULE_EXPORT void nautilus_module_shutdown() {}

G_MODULE_EXPORT void nautilus_module_list_types(const GType** types, int* num_types) {
  static const GType type = sprig::filemanagers::providerType();
  *types = &type;
  *num_types = 1;
}
}
// NOLINTEND(readability-identifier-naming)
