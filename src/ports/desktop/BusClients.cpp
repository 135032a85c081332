// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/BusClients.h"

#include <utility>

namespace sprig::desktop {

BusClients::BusClients(GDBusConnection& connection, std::function<void()> changed)
    : bus(static_cast<GDBusConnection*>(g_object_ref(&connection))), haveChanged(std::move(changed)) {}

BusClients::~BusClients() {
  for (const auto& [sender, watch] : watches) g_bus_unwatch_name(watch);
}

void BusClients::add(const std::string& sender) {
  const auto [entry, isNew] = watches.try_emplace(sender, 0);
  if (!isNew) return;
  entry->second = g_bus_watch_name_on_connection(bus.get(), sender.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                 nullptr, nameVanished, this, nullptr);
  if (watches.size() == 1) haveChanged();
}

void BusClients::nameVanished(GDBusConnection*, const char* name, void* self) noexcept {
  auto& clients = *static_cast<BusClients*>(self);
  const auto entry = clients.watches.find(std::string_view(name));
  if (entry == clients.watches.end()) return;
  g_bus_unwatch_name(entry->second);
  clients.watches.erase(entry);
  if (clients.watches.empty()) clients.haveChanged();
}

}  // namespace sprig::desktop
