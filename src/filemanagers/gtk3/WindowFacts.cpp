// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/WindowFacts.h"

#include <string_view>
#include <vector>

#include "filemanagers/client/LocationUri.h"
#include "filemanagers/gtk3/GtkViews.h"
#include "wire/Pointers.h"

namespace sprig::filemanagers {

namespace {

using wire::ObjectPointer;
using wire::TextPointer;

struct Search {
  bool (*isWanted)(GtkWidget* widget);
  std::vector<GtkWidget*> found;
};

/// Looks at what is not on the screen, too, and into menus.
void look(GtkWidget* widget, void* data) {
  auto& search = *static_cast<Search*>(data);
  if (search.isWanted(widget)) search.found.push_back(widget);
  if (GTK_IS_CONTAINER(widget)) gtk_container_forall(GTK_CONTAINER(widget), look, data);
  auto* submenu = GTK_IS_MENU_ITEM(widget) ? gtk_menu_item_get_submenu(GTK_MENU_ITEM(widget)) : nullptr;
  if (submenu) look(submenu, data);
}

std::vector<GtkWidget*> widgetsBelow(GtkWidget* top, bool (*isWanted)(GtkWidget*)) {
  Search search{isWanted, {}};
  look(top, &search);
  return search.found;
}

bool isLocationEntry(GtkWidget* widget) {
  return GTK_IS_ENTRY(widget) &&
         (isNamed(widget, "NemoLocationEntry") || isNamed(widget, "CajaLocationEntry"));
}

/// The action of a menu's item; null when it has none.
ObjectPointer<GObject> actionOf(GtkWidget* widget) {
  GObject* action = nullptr;
  if (hasProperty(widget, "related-action", G_TYPE_OBJECT))
    g_object_get(widget, "related-action", &action, nullptr);
  return ObjectPointer<GObject>(action);
}

bool isShowHiddenFiles(GtkWidget* widget) {
  if (!GTK_IS_MENU_ITEM(widget)) return false;
  const auto action = actionOf(widget);
  if (!action || !hasProperty(action.get(), "name", G_TYPE_STRING)) return false;
  char* name = nullptr;
  g_object_get(action.get(), "name", &name, nullptr);
  const TextPointer owned(name);
  return name && std::string_view(name) == "Show Hidden Files" &&
         hasProperty(action.get(), "active", G_TYPE_BOOLEAN);
}

}  // namespace

std::optional<std::string> locationAround(GtkWidget* view) {
  std::vector<GtkWidget*> entries;
  for (auto* around = view; around && entries.empty(); around = gtk_widget_get_parent(around)) {
    entries = widgetsBelow(around, isLocationEntry);
  }
  // Of two panes in one window that share a line for locations, none can be told.
  if (entries.size() != 1) return std::nullopt;
  const ObjectPointer<GFile> file(g_file_parse_name(gtk_entry_get_text(GTK_ENTRY(entries.front()))));
  const TextPointer uri(g_file_get_uri(file.get()));
  return std::string(withoutLastSlash(uri.get()));
}

std::optional<bool> showsHiddenFiles(GtkWidget* view) {
  const auto items = widgetsBelow(gtk_widget_get_toplevel(view), isShowHiddenFiles);
  if (items.empty()) return std::nullopt;
  gboolean isActive = FALSE;
  g_object_get(actionOf(items.front()).get(), "active", &isActive, nullptr);
  return isActive != FALSE;
}

}  // namespace sprig::filemanagers
