// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <functional>
#include <map>
#include <string>

#include "wire/Pointers.h"

namespace sprig::desktop {

/// The programs that have called us and are still on the bus, and what they are.
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

  bool areGone() const { return clients.empty(); }

  /// The name of the sender's executable file, "nautilus"; empty where it isn't known, or not yet: the bus is
  /// asked when the sender is added.
  std::string programOf(const std::string& sender) const;

 private:
  struct Client {
    guint watch = 0;
    std::string program;
  };

  void askForProcess(const std::string& sender);
  static void processKnown(GObject* connection, GAsyncResult* result, void* question) noexcept;
  static void nameVanished(GDBusConnection* connection, const char* name, void* self) noexcept;

  const wire::ObjectPointer<GDBusConnection> bus;
  const std::function<void()> haveChanged;
  const wire::ObjectPointer<GCancellable> questions;
  std::map<std::string, Client, std::less<>> clients;
};

}  // namespace sprig::desktop
