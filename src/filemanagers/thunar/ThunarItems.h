// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "filemanagers/client/MenuItems.h"

// Not all of its headers say by themselves that their functions are C's.
extern "C" {
#include <thunarx/thunarx.h>
}

namespace sprig::filemanagers {

/// What `MenuItems` and `urisOf` need to know of Thunar.
struct ThunarMenu {
  using Item = ThunarxMenuItem;
  using Submenu = ThunarxMenu;

  static std::string uriOf(void* file);
  /// There are no separators, and Thunar before 4.19.3 draws disabled items like all others.
  static bool shows(const MenuEntry& entry, wire::Kind kind);
  static Item* newItem(const MenuEntry& entry);
  static Submenu* newSubmenu() { return thunarx_menu_new(); }
  static void append(Submenu* submenu, Item* item) { thunarx_menu_append_item(submenu, item); }
  static void setSubmenu(Item* item, Submenu* submenu) { thunarx_menu_item_set_menu(item, submenu); }
};

/// Thunar's items, made once for a menu and handed out again and again: Thunar never frees the items of a
/// submenu (before 4.21.2), so with new ones for each menu it would grow for as long as it runs.
///
/// Threads: main thread.
class ThunarItems {
 public:
  explicit ThunarItems(std::shared_ptr<ExtensionClient> extensionClient)
      : client(std::move(extensionClient)) {}

  /// What Thunar gets when it asks for a menu. The list and its references are the caller's.
  GList* itemsFor(MenuOccasion occasion);

 private:
  /// One menu that Thunar may hold at a time.
  class Menu {
   public:
    Menu(std::shared_ptr<ExtensionClient> client, MenuEntries entries, wire::Kind kind);
    ~Menu();
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    bool isFree() const { return itemsInUse == 0; }
    wire::Kind kind() const { return occasion->kind; }
    bool shows(const MenuEntries& wanted) const { return entries == wanted; }
    GList* lend(MenuOccasion newOccasion);

   private:
    static void useChanged(void* menu, GObject* item, gboolean isOnlyOurs);

    MenuEntries entries;
    /// Of the last time that it was lent.
    std::shared_ptr<MenuOccasion> occasion;
    MenuItems<ThunarMenu>::List items;
    std::size_t itemsInUse = 0;
  };

  std::shared_ptr<ExtensionClient> client;
  std::vector<std::unique_ptr<Menu>> menus;
};

}  // namespace sprig::filemanagers
