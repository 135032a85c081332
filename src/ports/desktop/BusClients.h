// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <functional>
#include <map>
#include <string>

#include "wire/Pointers.h"

namespace sprig::desktop {

/// The programs that have called us and are still on the bus.
///
/// Threads:   main thread, on which `changed` is called, too, when the first one comes and when the last has
/// gone. Ownership: holds the connection.
class BusClients {
 public:
  BusClients(GDBusConnection& connection, std::function<void()> changed);
  ~BusClients();
  BusClients(const BusClients&) = delete;
  BusClients& operator=(const BusClients&) = delete;

  /// `sender` is the unique name of a connection.
  void add(const std::string& sender);

  bool areGone() const { return watches.empty(); }

 private:
  static void nameVanished(GDBusConnection* connection, const char* name, void* self) noexcept;

  const wire::ObjectPointer<GDBusConnection> bus;
  const std::function<void()> haveChanged;
  std::map<std::string, guint, std::less<>> watches;
};

}  // namespace sprig::desktop
