// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <compare>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "filemanagers/client/ProviderType.h"
#include "filemanagers/client/SharedObject.h"
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
inline std::string gtkLabel(const MenuEntry& entry) { return escapeMnemonics(entry, '_'); }

/// Sets what all managers' items have properties of the same names for. Null for no icon.
void showEntry(void* item, const MenuEntry& entry, const char* icon);

/// What an item does when it is picked; shared with the item, so that it can change while the item lives.
struct Pick {
  std::shared_ptr<ExtensionClient> client;
  std::shared_ptr<const MenuRequest> request;
  PickedEntry entry;
};

/// Has the pick sent when the manager tells that the item was picked.
void activateOnPick(void* item, std::shared_ptr<const Pick> pick);

/// What tells one manager from another, where it is the same for most. The rest is up to each:
///
///   Item, Submenu                              the manager's types, both GObjects
///   Item* newItem(const MenuEntry&, wire::Kind)   a new reference, to an item with the entry's name
///   void show(Item*, const MenuEntry&)         gives it the look of an entry of that name
///   Submenu* newSubmenu()                      a new reference
///   void append(Submenu*, Item*)               both stay the caller's
///   void setSubmenu(Item*, Submenu*)           both stay the caller's
struct MenuTraits {
  /// Whether it draws such an entry, and draws it truly.
  static bool shows(const MenuEntry& entry, wire::Kind /*kind*/) {
    return entry.type != MenuEntry::Type::separator;
  }
  /// A menu as it can show it.
  static MenuEntries arranged(const MenuEntries& menu, wire::Kind /*kind*/) { return menu; }
};

/// One menu of a manager's own items, which are handed out again and again. What a manager once got it may
/// keep for ever: the items of submenus in most of them. So there is one item for each name of an entry, and
/// a submenu is made anew only when others belong into it.
template <typename Manager>
class LentMenu {
 public:
  using Item = typename Manager::Item;
  using Submenu = typename Manager::Submenu;

  LentMenu(std::shared_ptr<ExtensionClient> extensionClient, wire::Kind menuKind)
      : client(std::move(extensionClient)), request(std::make_shared<MenuRequest>()), kind(menuKind) {}
  ~LentMenu() { setHolder(nullptr); }
  LentMenu(const LentMenu&) = delete;
  LentMenu& operator=(const LentMenu&) = delete;

  bool shows(const MenuEntries& wanted) const { return entries == wanted; }

  /// Whether nobody misses the menu if it is handed out for something else. A holder shows one menu of a kind
  /// only, the last one; without one, the manager lets go of the items when it no longer shows them.
  bool isFreeFor(wire::Kind wanted, const void* newHolder) const {
    if (kind != wanted) return false;
    if (isHeldByWindow) return !holder || holder == newHolder;
    return std::none_of(top.begin(), top.end(), [](const Part* part) { return part->item.isShared(); });
  }

  /// Hands the items of the menu out. The list and its references are the caller's.
  GList* lend(const MenuEntries& wanted, MenuRequest newRequest, void* newHolder) {
    setHolder(static_cast<GObject*>(newHolder));
    *request = std::move(newRequest);
    if (!shows(wanted)) show(wanted);
    GList* list = nullptr;
    for (auto part = top.rbegin(); part != top.rend(); ++part) {
      list = g_list_prepend(list, g_object_ref((*part)->item.get()));
    }
    return list;
  }

 private:
  struct Part {
    explicit Part(Item* newItem) : item(newItem) {}

    SharedObject<Item> item;
    std::shared_ptr<Pick> pick;
    wire::ObjectPointer<Submenu> submenu;
    /// What the submenu lists.
    std::vector<Part*> children;
  };
  /// With whether there is a submenu: an item that has one can't do without any more. The number is for
  /// another order of what is in it: Caja and Nemo leave what keeps its names where it was.
  struct Name {
    std::string text;
    bool hasChildren = false;
    int order = 0;
    auto operator<=>(const Name&) const = default;
  };

  void show(const MenuEntries& wanted) {
    std::set<const Part*> used;
    top = partsFor(*Manager::arranged(wanted, kind), used);
    entries = wanted;
    // Others may be wanted again, and come for nothing while the manager keeps them anyway.
    std::erase_if(parts, [&](const auto& named) {
      return used.count(&named.second) == 0 && !named.second.item.isShared();
    });
  }

  std::vector<Part*> partsFor(const std::vector<MenuEntry>& wanted, std::set<const Part*>& used) {
    std::vector<Part*> result;
    for (const auto& entry : wanted) {
      if (!Manager::shows(entry, kind)) continue;
      auto children = partsFor(entry.children, used);
      if (entry.type == MenuEntry::Type::submenu && children.empty()) continue;
      auto& part = partFor(entry, children);
      if (part.children != children) setChildren(part, std::move(children));
      used.insert(&part);
      result.push_back(&part);
    }
    return result;
  }

  Part& partFor(const MenuEntry& entry, const std::vector<Part*>& children) {
    const auto name = nameFor(entry, children);
    auto found = parts.find(name);
    if (found == parts.end()) {
      auto named = entry;
      if (name.order != 0) named.name += "-" + std::to_string(name.order);
      found = parts.try_emplace(name, Manager::newItem(named, kind)).first;
    }
    auto& part = found->second;
    Manager::show(part.item.get(), entry);
    if (name.hasChildren || entry.action.empty()) return part;
    if (part.pick) {
      part.pick->entry = {entry.action, entry.title};
    } else {
      part.pick = std::make_shared<Pick>(Pick{client, request, {entry.action, entry.title}});
      activateOnPick(part.item.get(), part.pick);
    }
    return part;
  }

  Name nameFor(const MenuEntry& entry, const std::vector<Part*>& children) {
    if (children.empty()) return {entry.name};
    auto& order = orders[entry.name];
    const auto last = parts.find(Name{entry.name, true, order});
    if (last != parts.end() && !haveSameOrder(last->second.children, children)) ++order;
    return {entry.name, true, order};
  }

  /// Whether what is in both stands in the same order.
  static bool haveSameOrder(const std::vector<Part*>& before, const std::vector<Part*>& after) {
    auto place = before.begin();
    for (auto* part : after) {
      const auto found = std::find(place, before.end(), part);
      if (found != before.end()) {
        place = found;
      } else if (std::find(before.begin(), place, part) != place) {
        return false;
      }
    }
    return true;
  }

  void setChildren(Part& part, std::vector<Part*> children) {
    part.submenu.reset(Manager::newSubmenu());
    for (const auto* child : children) Manager::append(part.submenu.get(), child->item.get());
    Manager::setSubmenu(part.item.get(), part.submenu.get());
    part.children = std::move(children);
  }

  void setHolder(GObject* newHolder) {
    if (holder == newHolder) return;
    if (holder) g_object_remove_weak_pointer(holder, reinterpret_cast<void**>(&holder));
    holder = newHolder;
    if (!holder) return;
    isHeldByWindow = true;
    g_object_add_weak_pointer(holder, reinterpret_cast<void**>(&holder));
  }

  std::shared_ptr<ExtensionClient> client;
  /// Of the last time that it was lent.
  std::shared_ptr<MenuRequest> request;
  wire::Kind kind;
  MenuEntries entries;
  std::map<Name, Part> parts;
  /// How often what is in a submenu has changed places.
  std::map<std::string, int> orders;
  std::vector<Part*> top;
  /// Null when it has gone.
  GObject* holder = nullptr;
  bool isHeldByWindow = false;
};

/// The items that a provider hands out: as many menus as the manager shows at a time, and few items in all.
///
/// Threads: main thread.
template <typename Manager>
class MenuItems {
 public:
  explicit MenuItems(std::shared_ptr<ExtensionClient> extensionClient) : client(std::move(extensionClient)) {}

  /// What a manager gets when it asks for a menu. The list and its references are the caller's. `holder`, a
  /// GObject, is the window where the manager shows one menu of each kind at a time, for managers that never
  /// let go of items; null for others.
  GList* itemsFor(MenuRequest request, void* holder = nullptr) {
    if (request.targets.empty()) return nullptr;
    const auto entries = client->menu(request.kind, request.targets.front());
    if (!entries) return nullptr;
    auto& menu = menuFor(entries, request.kind, holder);
    return menu.lend(entries, std::move(request), holder);
  }

 private:
  LentMenu<Manager>& menuFor(const MenuEntries& entries, wire::Kind kind, const void* holder) {
    LentMenu<Manager>* found = nullptr;
    for (const auto& menu : menus) {
      if (menu->isFreeFor(kind, holder) && (!found || menu->shows(entries))) found = menu.get();
    }
    return found ? *found : *menus.emplace_back(std::make_unique<LentMenu<Manager>>(client, kind));
  }

  std::shared_ptr<ExtensionClient> client;
  std::vector<std::unique_ptr<LentMenu<Manager>>> menus;
};

/// The items of a provider, which belong to it; null when it has no way to the extension.
template <typename Manager>
MenuItems<Manager>* itemsOf(void* provider) {
  constexpr const char* key = "sprig-items";
  auto* object = static_cast<GObject*>(provider);
  auto* items = static_cast<MenuItems<Manager>*>(g_object_get_data(object, key));
  if (items) return items;
  auto client = clientOf(provider);
  if (!client) return nullptr;
  items = new MenuItems<Manager>(std::move(client));
  g_object_set_data_full(object, key, items, [](void* old) { delete static_cast<MenuItems<Manager>*>(old); });
  return items;
}

/// What a provider answers to a manager that asks for a menu.
template <typename Manager>
GList* menuItems(void* provider, MenuRequest request, void* holder = nullptr) {
  auto* items = itemsOf<Manager>(provider);
  return items ? items->itemsFor(std::move(request), holder) : nullptr;
}

}  // namespace sprig::filemanagers
