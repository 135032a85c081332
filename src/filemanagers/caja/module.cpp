// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtk/gtk.h>
// Not all of these say by themselves that their functions are C's.
extern "C" {
#include <libcaja-extension/caja-file-info.h>
#include <libcaja-extension/caja-menu-provider.h>
}

#include "filemanagers/client/LocationUri.h"
#include "filemanagers/client/MenuItems.h"
#include "filemanagers/client/guardCallback.h"
#include "filemanagers/gtk3/ClickOrigin.h"
#include "filemanagers/gtk3/GtkMenus.h"
#include "filemanagers/gtk3/ViewSelection.h"
#include "filemanagers/gtk3/beforeNextMenu.h"
#include "filemanagers/gtk3/endOldMenuWidgets.h"
#include "filemanagers/gtk3/themedIcon.h"

namespace sprig::filemanagers {

namespace {

/// What `MenuItems` and `urisOf` need to know of Caja, which has no separators.
struct CajaMenus : MenuTraits {
  using Item = CajaMenuItem;
  using Submenu = CajaMenu;

  static std::string uriOf(void* file) {
    const wire::TextPointer uri(caja_file_info_get_uri(static_cast<CajaFileInfo*>(file)));
    return locationUri(uri.get());
  }
  static Item* newItem(const MenuEntry& entry, wire::Kind /*kind*/) {
    return caja_menu_item_new(entry.name.c_str(), "", "", nullptr);
  }
  static void show(Item* item, const MenuEntry& entry) { showEntry(item, entry, themedIcon(entry.icon)); }
  static Submenu* newSubmenu() { return caja_menu_new(); }
  static void append(Submenu* submenu, Item* item) { caja_menu_append_item(submenu, item); }
  static void setSubmenu(Item* item, Submenu* submenu) { caja_menu_item_set_submenu(item, submenu); }
};

wire::ObjectPointer<GObject> existingFile(const char* uri) {
  return wire::ObjectPointer<GObject>(reinterpret_cast<GObject*>(caja_file_info_lookup_for_uri(uri)));
}

GList* fileItems(CajaMenuProvider* provider, GtkWidget* window, GList* files) {
  return guardCallback([&] {
    endOldMenuWidgets(provider);
    return menuItems<CajaMenus>(provider,
                                {wire::Kind::items, urisOf<CajaMenus>(files), clickOriginIn(window)}, window);
  });
}

MenuRequest menuRequestIn(GtkWidget* window, wire::Kind kind, CajaFileInfo* folder) {
  GList files{folder, nullptr, nullptr};
  return {kind, urisOf<CajaMenus>(&files), clickOriginIn(window)};
}

GList* backgroundItems(CajaMenuProvider* provider, GtkWidget* window, CajaFileInfo* folder) {
  return guardCallback([&] {
    endOldMenuWidgets(provider);
    return menuItems<CajaMenus>(provider, menuRequestIn(window, wire::Kind::background, folder), window);
  });
}

/// What the toolbar's button needs when it is clicked.
struct ToolbarClick {
  std::shared_ptr<ExtensionClient> client;
  MenuRequest request;
};

void toolbarClicked(CajaMenuItem* /*item*/, void* data) {
  const auto& click = *static_cast<const ToolbarClick*>(data);
  guardCallback([&] { popUpMenu(click.client, click.request); });
}

void forgetToolbarClick(void* data, GClosure* /*closure*/) { delete static_cast<ToolbarClick*>(data); }

/// One button: Caja draws nothing below it. The templates come up as a menu of our own.
GList* toolbarItems(CajaMenuProvider* provider, GtkWidget* window, CajaFileInfo* folder) {
  return guardCallback([&]() -> GList* {
    auto request = menuRequestIn(window, wire::Kind::toolbar, folder);
    auto client = clientOf(provider);
    const auto button = client ? client->toolbarButton(request.targets.front()) : std::nullopt;
    if (!button) return nullptr;
    auto* item = caja_menu_item_new("sprig-toolbar", button->name.c_str(), button->toolTip.c_str(),
                                    themedIcon(button->icon));
    auto click = std::make_unique<ToolbarClick>(ToolbarClick{std::move(client), std::move(request)});
    g_signal_connect_data(item, "activate", G_CALLBACK(toolbarClicked), click.release(), forgetToolbarClick,
                          GConnectFlags(0));
    return g_list_prepend(nullptr, item);
  });
}

void fillMenuProvider(void* functions, void* /*data*/) {
  auto& provider = *static_cast<CajaMenuProviderIface*>(functions);
  provider.get_file_items = fileItems;
  provider.get_background_items = backgroundItems;
  provider.get_toolbar_items = toolbarItems;
}

void askAgain(void* provider) {
  beforeNextMenu(provider, [](void* updated) {
    caja_menu_provider_emit_items_updated_signal(static_cast<CajaMenuProvider*>(updated));
  });
}

GType providerType() {
  return registerProviderType({"SprigCajaProvider",
                               {wire::Kind::items, wire::Kind::background, wire::Kind::toolbar},
                               {{CAJA_TYPE_MENU_PROVIDER, fillMenuProvider}},
                               askAgain,
                               selectionInViews({CAJA_TYPE_FILE_INFO, CajaMenus::uriOf, existingFile})});
}

}  // namespace

}  // namespace sprig::filemanagers

// Caja's names for what it calls in a module.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

G_MODULE_EXPORT void caja_module_initialize(GTypeModule* /*module*/) { sprig::filemanagers::providerType(); }

G_MODULE_EXPORT void caja_module_shutdown() {}

G_MODULE_EXPORT void caja_module_list_types(const GType** types, int* num_types) {
  static const GType type = sprig::filemanagers::providerType();
  *types = &type;
  *num_types = 1;
}
}
// NOLINTEND(readability-identifier-naming)
