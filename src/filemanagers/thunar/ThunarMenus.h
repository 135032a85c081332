// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <string>

#include "filemanagers/client/MenuItems.h"

// Not all of its headers say by themselves that their functions are C's.
extern "C" {
#include <thunarx/thunarx.h>
}

namespace sprig::filemanagers {

/// What `MenuItems` and `urisOf` need to know of Thunar.
struct ThunarMenus : MenuTraits {
  using Item = ThunarxMenuItem;
  using Submenu = ThunarxMenu;

  static std::string uriOf(void* file);
  /// There are no separators, and Thunar before 4.19.3 draws disabled items like all others.
  static bool shows(const MenuEntry& entry, wire::Kind kind);
  static Item* newItem(const MenuEntry& entry, wire::Kind /*kind*/) {
    return thunarx_menu_item_new(entry.name.c_str(), "", "", nullptr);
  }
  static void show(Item* item, const MenuEntry& entry);
  static Submenu* newSubmenu() { return thunarx_menu_new(); }
  static void append(Submenu* submenu, Item* item) { thunarx_menu_append_item(submenu, item); }
  static void setSubmenu(Item* item, Submenu* submenu) { thunarx_menu_item_set_menu(item, submenu); }
};

}  // namespace sprig::filemanagers
