#include <glib-object.h>
// This one does not say by itself that its functions are C's.
extern "C" {
#include <nautilus-extension.h>
}

#include "filemanagers/client/AtBorder.h"
#include "filemanagers/client/MenuItems.h"
#include "filemanagers/gtk4/ClickOrigin.h"

namespace sprig::filemanagers {

namespace {

/// What `MenuItems` and `urisOf` need to know of GNOME Files, which has no separators and draws no icons. It
/// knows what to do for an item by the item's name
/// only, the same in both menus: each menu has names of its own, or a pick in one would be one in the other.
template <wire::Kind menuKind>
struct NautilusMenus {
  using Item = NautilusMenuItem;
  using Submenu = NautilusMenu;

  static std::string uriOf(void* file) {
    const wire::TextPointer uri(nautilus_file_info_get_uri(static_cast<NautilusFileInfo*>(file)));
    return uri ? uri.get() : std::string();
  }
  static bool shows(const MenuEntry& entry, wire::Kind /*kind*/) {
    return entry.type != MenuEntry::Type::separator;
  }
  static Item* newItem(const MenuEntry& entry) {
    const auto name = (menuKind == wire::Kind::background ? "background-" : "items-") + entry.name;
    auto* item = nautilus_menu_item_new(name.c_str(), gtkLabelOf(entry).c_str(), "", nullptr);
    g_object_set(item, "sensitive", entry.isEnabled ? TRUE : FALSE, nullptr);
    return item;
  }
  static Submenu* newSubmenu() { return nautilus_menu_new(); }
  static void append(Submenu* submenu, Item* item) { nautilus_menu_append_item(submenu, item); }
  static void setSubmenu(Item* item, Submenu* submenu) { nautilus_menu_item_set_submenu(item, submenu); }
};

template <wire::Kind menuKind>
GList* itemsFor(NautilusMenuProvider* provider, GList* files) {
  using Menus = NautilusMenus<menuKind>;
  return atBorder([&] {
    return menuItems<Menus>(provider, {menuKind, urisOf<Menus>(files), clickOriginInActiveWindow});
  });
}

GList* fileItems(NautilusMenuProvider* provider, GList* files) {
  return itemsFor<wire::Kind::items>(provider, files);
}

GList* backgroundItems(NautilusMenuProvider* provider, NautilusFileInfo* folder) {
  GList files{folder, nullptr, nullptr};
  return itemsFor<wire::Kind::background>(provider, &files);
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
