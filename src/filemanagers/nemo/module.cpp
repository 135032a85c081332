// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtk/gtk.h>
// Not all of these say by themselves that their functions are C's.
extern "C" {
#include <libnemo-extension/nemo-file-info.h>
#include <libnemo-extension/nemo-menu-provider.h>
#include <libnemo-extension/nemo-name-and-desc-provider.h>
}

#include "filemanagers/client/LocationUri.h"
#include "filemanagers/client/MenuItems.h"
#include "filemanagers/client/guardCallback.h"
#include "filemanagers/gtk3/ClickOrigin.h"
#include "filemanagers/gtk3/ViewSelection.h"
#include "filemanagers/gtk3/beforeNextMenu.h"
#include "filemanagers/gtk3/endOldMenuWidgets.h"
#include "filemanagers/gtk3/themedIcon.h"
#include "translation/translated.h"

namespace sprig::filemanagers {

namespace {

/// What `MenuItems` and `urisOf` need to know of Nemo.
struct NemoMenus : MenuTraits {
  using Item = NemoMenuItem;
  using Submenu = NemoMenu;

  static std::string uriOf(void* file) {
    const wire::TextPointer uri(nemo_file_info_get_uri(static_cast<NemoFileInfo*>(file)));
    return locationUri(uri.get());
  }
  /// In the menu of a folder's background, a separator is drawn as an empty item that can be picked.
  static bool shows(const MenuEntry& entry, wire::Kind kind) {
    return entry.type != MenuEntry::Type::separator || kind == wire::Kind::items;
  }
  static Item* newItem(const MenuEntry& entry, wire::Kind /*kind*/) {
    if (entry.type == MenuEntry::Type::separator) return nemo_menu_item_new_separator(entry.name.c_str());
    return nemo_menu_item_new(entry.name.c_str(), "", "", nullptr);
  }
  static void show(Item* item, const MenuEntry& entry) {
    if (entry.type != MenuEntry::Type::separator) showEntry(item, entry, themedIcon(entry.icon));
  }
  static Submenu* newSubmenu() { return nemo_menu_new(); }
  static void append(Submenu* submenu, Item* item) { nemo_menu_append_item(submenu, item); }
  static void setSubmenu(Item* item, Submenu* submenu) { nemo_menu_item_set_submenu(item, submenu); }
};

wire::ObjectPointer<GObject> existingFile(const char* uri) {
  return wire::ObjectPointer<GObject>(reinterpret_cast<GObject*>(nemo_file_info_lookup_for_uri(uri)));
}

GList* fileItems(NemoMenuProvider* provider, GtkWidget* window, GList* files) {
  return guardCallback([&] {
    endOldMenuWidgets(provider);
    return menuItems<NemoMenus>(provider,
                                {wire::Kind::items, urisOf<NemoMenus>(files), clickOriginIn(window)}, window);
  });
}

GList* backgroundItems(NemoMenuProvider* provider, GtkWidget* window, NemoFileInfo* folder) {
  return guardCallback([&] {
    endOldMenuWidgets(provider);
    GList files{folder, nullptr, nullptr};
    return menuItems<NemoMenus>(
        provider, {wire::Kind::background, urisOf<NemoMenus>(&files), clickOriginIn(window)}, window);
  });
}

/// The name in Nemo's list of extensions.
GList* nameAndDescription(NemoNameAndDescProvider* /*provider*/) {
  return guardCallback([] {
    return g_list_prepend(
        nullptr, g_strdup(("Sprig:::" + std::string(translated("New files from templates"))).c_str()));
  });
}

void fillMenuProvider(void* functions, void* /*data*/) {
  auto& provider = *static_cast<NemoMenuProviderIface*>(functions);
  provider.get_file_items = fileItems;
  provider.get_background_items = backgroundItems;
}

void fillNameProvider(void* functions, void* /*data*/) {
  static_cast<NemoNameAndDescProviderIface*>(functions)->get_name_and_desc = nameAndDescription;
}

void askAgain(void* provider) {
  beforeNextMenu(provider, [](void* updated) {
    nemo_menu_provider_emit_items_updated_signal(static_cast<NemoMenuProvider*>(updated));
  });
}

GType providerType() {
  return registerProviderType(
      {"SprigNemoProvider",
       {wire::Kind::items, wire::Kind::background},
       {{NEMO_TYPE_MENU_PROVIDER, fillMenuProvider}, {NEMO_TYPE_NAME_AND_DESC_PROVIDER, fillNameProvider}},
       askAgain,
       selectionInViews({NEMO_TYPE_FILE_INFO, NemoMenus::uriOf, existingFile})});
}

}  // namespace

}  // namespace sprig::filemanagers

// Nemo's names for what it calls in a module.
// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

G_MODULE_EXPORT void nemo_module_initialize(GTypeModule* /*module*/) { sprig::filemanagers::providerType(); }

G_MODULE_EXPORT void nemo_module_shutdown() {}

G_MODULE_EXPORT void nemo_module_list_types(const GType** types, int* num_types) {
  static const GType type = sprig::filemanagers::providerType();
  *types = &type;
  *num_types = 1;
}
}
// NOLINTEND(readability-identifier-naming)
