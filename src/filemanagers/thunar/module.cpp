// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtk/gtk.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "filemanagers/client/ProviderType.h"
#include "filemanagers/client/guardCallback.h"
#include "filemanagers/gtk3/ClickOrigin.h"
#include "filemanagers/gtk3/ViewSelection.h"
#include "filemanagers/thunar/ThunarMenus.h"

namespace sprig::filemanagers {

namespace {

struct EventReleaser {
  void operator()(GdkEvent* event) const { gdk_event_free(event); }
};
using EventPointer = std::unique_ptr<GdkEvent, EventReleaser>;

/// Thunar asks on every key press, to see whether it is the shortcut of an item; ours have none. A key that
/// opens a menu is another matter.
bool isOtherKey(const GdkEvent* event) {
  if (!event || gdk_event_get_event_type(event) != GDK_KEY_PRESS) return false;
  guint key = 0;
  gdk_event_get_keyval(event, &key);
  return key != GDK_KEY_Menu && key != GDK_KEY_F10;
}

/// Whether the click was in the side pane, on a shortcut or in the tree: it gives the folder as if it were
/// selected.
bool isInSidePane(GdkEvent* event) {
  constexpr std::array<std::string_view, 2> views{"ThunarShortcutsView", "ThunarTreeView"};
  auto* widget = event ? gtk_get_event_widget(event) : nullptr;
  for (; widget; widget = gtk_widget_get_parent(widget)) {
    if (std::find(views.begin(), views.end(), G_OBJECT_TYPE_NAME(widget)) != views.end()) return true;
  }
  return false;
}

GList* itemsFor(ThunarxMenuProvider* provider, GtkWidget* window, wire::Kind kind, GList* files) {
  return menuItems<ThunarMenus>(provider, {kind, urisOf<ThunarMenus>(files), clickOriginIn(window)});
}

GList* fileItems(ThunarxMenuProvider* provider, GtkWidget* window, GList* files) {
  return guardCallback([&]() -> GList* {
    const EventPointer event(gtk_get_current_event());
    if (isOtherKey(event.get())) return nullptr;
    return itemsFor(provider, window, isInSidePane(event.get()) ? wire::Kind::sidebar : wire::Kind::items,
                    files);
  });
}

GList* folderItems(ThunarxMenuProvider* provider, GtkWidget* window, ThunarxFileInfo* folder) {
  return guardCallback([&]() -> GList* {
    const EventPointer event(gtk_get_current_event());
    if (isOtherKey(event.get())) return nullptr;
    GList files{folder, nullptr, nullptr};
    return itemsFor(provider, window, wire::Kind::background, &files);
  });
}

void fillMenuProvider(void* functions, void* /*data*/) {
  auto& provider = *static_cast<ThunarxMenuProviderIface*>(functions);
  provider.get_file_menu_items = fileItems;
  provider.get_folder_menu_items = folderItems;
}

GType providerType() {
  return registerProviderType({"SprigThunarProvider",
                               {wire::Kind::items, wire::Kind::background, wire::Kind::sidebar},
                               {{THUNARX_TYPE_MENU_PROVIDER, fillMenuProvider}},
                               nullptr,
                               selectionInViews({THUNARX_TYPE_FILE_INFO, ThunarMenus::uriOf, nullptr})});
}

}  // namespace

}  // namespace sprig::filemanagers

// Thunar's names for what it calls in a module.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

G_MODULE_EXPORT void thunar_extension_initialize(ThunarxProviderPlugin* plugin) {
  thunarx_provider_plugin_set_resident(plugin, TRUE);
  sprig::filemanagers::providerType();
}

G_MODULE_EXPORT void thunar_extension_shutdown() {}

G_MODULE_EXPORT void thunar_extension_list_types(const GType** types, int* count) {
  static const GType type = sprig::filemanagers::providerType();
  *types = &type;
  *count = 1;
}
}
// NOLINTEND(readability-identifier-naming)
