// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "filemanagers/client/ProviderType.h"
#include "wire/Pointers.h"

namespace sprig::filemanagers {

/// The targets of a selection that go over the bus.
///
/// `Manager::uriOf(void* file)` is the URI of a file as the manager hands it over, empty for none.
template <typename Manager>
std::vector<std::string> urisOf(GList* files) {
  std::vector<std::string> uris;
  for (; files && uris.size() < ExtensionClient::maxTargets; files = files->next) {
    uris.push_back(Manager::uriOf(files->data));
  }
  return uris;
}

/// What to label an entry with: all of these managers draw their labels as GTK does.
inline std::string gtkLabelOf(const MenuEntry& entry) { return labelOf(entry, '_'); }

/// Has `entry` activated when the manager tells that an item was picked. Keeps what it needs as long as the
/// item lives; the occasion is that of the moment of the pick.
void activateOnPick(void* item, std::shared_ptr<ExtensionClient> client,
                    std::shared_ptr<const MenuOccasion> occasion, PickedEntry entry);

/// Makes a manager's own menu items of menu entries. `Manager` is the little that tells one manager from
/// another:
///
///   Item, Submenu                              the manager's types, both GObjects
///   bool shows(const MenuEntry&, wire::Kind)   whether it draws such an entry, and draws it truly
///   Item* newItem(const MenuEntry&)            a new reference
///   Submenu* newSubmenu()                      a new reference
///   void append(Submenu*, Item*)               both stay the caller's
///   void setSubmenu(Item*, Submenu*)           both stay the caller's
template <typename Manager>
class MenuItems {
 public:
  using Item = typename Manager::Item;
  using Submenu = typename Manager::Submenu;
  using List = std::vector<wire::ObjectPointer<Item>>;

  MenuItems(std::shared_ptr<ExtensionClient> extensionClient,
            std::shared_ptr<const MenuOccasion> menuOccasion)
      : client(std::move(extensionClient)), occasion(std::move(menuOccasion)) {}

  /// In the order of the entries, without those that the manager does not draw truly.
  List make(const std::vector<MenuEntry>& entries) const {
    List items;
    for (const auto& entry : entries) {
      if (!Manager::shows(entry, occasion->kind)) continue;
      if (auto item = make(entry)) items.push_back(std::move(item));
    }
    return items;
  }

 private:
  wire::ObjectPointer<Item> make(const MenuEntry& entry) const {
    const auto children = make(entry.children);
    if (entry.type == MenuEntry::Type::submenu && children.empty()) return nullptr;
    wire::ObjectPointer<Item> item(Manager::newItem(entry));
    if (!children.empty()) {
      const wire::ObjectPointer<Submenu> submenu(Manager::newSubmenu());
      for (const auto& child : children) Manager::append(submenu.get(), child.get());
      Manager::setSubmenu(item.get(), submenu.get());
    } else if (!entry.action.empty()) {
      activateOnPick(item.get(), client, occasion, {entry.action, entry.title});
    }
    return item;
  }

  std::shared_ptr<ExtensionClient> client;
  std::shared_ptr<const MenuOccasion> occasion;
};

/// Hands items over to a manager.
template <typename Item>
GList* listOf(std::vector<wire::ObjectPointer<Item>> items) {
  GList* list = nullptr;
  for (auto item = items.rbegin(); item != items.rend(); ++item) {
    list = g_list_prepend(list, item->release());
  }
  return list;
}

/// For managers that show a menu as it is.
inline MenuEntries asItIs(const MenuEntries& menu) { return menu; }

/// What a provider answers to a manager that asks for a menu, which `arranged` makes one that it can show.
template <typename Manager>
GList* menuItems(void* provider, MenuOccasion occasion,
                 MenuEntries (*arranged)(const MenuEntries& menu) = asItIs) {
  const auto client = clientOf(provider);
  if (!client || occasion.targets.empty()) return nullptr;
  const auto entries = client->menu(occasion.kind, occasion.targets.front());
  if (!entries) return nullptr;
  const MenuItems<Manager> items(client, std::make_shared<const MenuOccasion>(std::move(occasion)));
  return listOf(items.make(*arranged(entries)));
}

}  // namespace sprig::filemanagers
