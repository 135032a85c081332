// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/GtkMenus.h"

#include <gtk/gtk.h>

#include "filemanagers/client/MenuItems.h"

namespace sprig::filemanagers {

namespace {

/// What `MenuItems` needs to know of GTK's own menus. New widgets float: they belong to whom they are put
/// into.
struct GtkMenus : MenuTraits {
  using Item = GtkMenuItem;
  using Submenu = GtkMenu;

  static bool shows(const MenuEntry& /*entry*/, wire::Kind /*kind*/) { return true; }
  static Item* newItem(const MenuEntry& entry, wire::Kind /*kind*/) {
    auto* item = entry.type == MenuEntry::Type::separator ? gtk_separator_menu_item_new()
                                                          : gtk_menu_item_new_with_mnemonic("");
    return GTK_MENU_ITEM(g_object_ref_sink(item));
  }
  static void show(Item* item, const MenuEntry& entry) {
    if (entry.type == MenuEntry::Type::separator) return;
    gtk_menu_item_set_label(item, gtkLabel(entry).c_str());
    gtk_widget_set_sensitive(GTK_WIDGET(item), entry.isEnabled ? TRUE : FALSE);
  }
  static Submenu* newSubmenu() { return GTK_MENU(g_object_ref_sink(gtk_menu_new())); }
  static void append(Submenu* submenu, Item* item) {
    gtk_menu_shell_append(GTK_MENU_SHELL(submenu), GTK_WIDGET(item));
  }
  static void setSubmenu(Item* item, Submenu* submenu) {
    gtk_menu_item_set_submenu(item, GTK_WIDGET(submenu));
  }
};

/// The pick comes after the menu has closed, so the menu must not go before the main loop is free.
gboolean destroy(void* menu) {
  gtk_widget_destroy(static_cast<GtkWidget*>(menu));
  return G_SOURCE_REMOVE;
}

void closed(GtkMenuShell* menu, void* /*data*/) { g_idle_add(destroy, menu); }

}  // namespace

void popUpMenu(const std::shared_ptr<ExtensionClient>& client, const MenuRequest& request) {
  if (request.targets.empty()) return;
  const auto entries = client->menu(request.kind, request.targets.front());
  if (!entries || entries->empty()) return;
  // A menu on its own belongs to GTK until it is destroyed.
  auto* menu = gtk_menu_new();
  auto* items = LentMenu<GtkMenus>(client, request.kind).lend(entries, request, nullptr);
  for (auto* item = items; item; item = item->next) {
    GtkMenus::append(GTK_MENU(menu), static_cast<GtkMenuItem*>(item->data));
  }
  g_list_free_full(items, g_object_unref);
  g_signal_connect(menu, "selection-done", G_CALLBACK(closed), nullptr);
  gtk_widget_show_all(menu);
  gtk_menu_popup_at_pointer(GTK_MENU(menu), nullptr);
}

}  // namespace sprig::filemanagers
