// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/BusClients.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

namespace sprig::desktop {

namespace {

struct ProcessQuestion {
  BusClients* clients;
  std::string sender;
};

std::string executableOf(guint32 process) {
  std::error_code unreadable;
  const auto link = std::filesystem::path("/proc") / std::to_string(process) / "exe";
  return std::filesystem::read_symlink(link, unreadable).filename().string();
}

}  // namespace

BusClients::BusClients(GDBusConnection& connection, std::function<void()> changed)
    : bus(static_cast<GDBusConnection*>(g_object_ref(&connection))),
      haveChanged(std::move(changed)),
      questions(g_cancellable_new()) {}

BusClients::~BusClients() {
  g_cancellable_cancel(questions.get());
  for (const auto& [sender, client] : clients) g_bus_unwatch_name(client.watch);
}

void BusClients::add(const std::string& sender) {
  const auto [entry, isNew] = clients.try_emplace(sender);
  if (!isNew) return;
  entry->second.watch = g_bus_watch_name_on_connection(
      bus.get(), sender.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, nameVanished, this, nullptr);
  askForProcess(sender);
  if (clients.size() == 1) haveChanged();
}

std::string BusClients::programOf(const std::string& sender) const {
  const auto entry = clients.find(sender);
  return entry == clients.end() ? "" : entry->second.program;
}

void BusClients::askForProcess(const std::string& sender) {
  auto question = std::make_unique<ProcessQuestion>(ProcessQuestion{this, sender});
  g_dbus_connection_call(bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "GetConnectionUnixProcessID", g_variant_new("(s)", sender.c_str()),
                         G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, questions.get(), processKnown,
                         question.release());
}

void BusClients::processKnown(GObject* connection, GAsyncResult* result, void* question) noexcept {
  const std::unique_ptr<ProcessQuestion> asked(static_cast<ProcessQuestion*>(question));
  const wire::VariantPointer answer(
      g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(connection), result, nullptr));
  if (!answer) return;
  auto& clients = asked->clients->clients;
  const auto entry = clients.find(asked->sender);
  if (entry == clients.end()) return;
  guint32 process = 0;
  g_variant_get(answer.get(), "(u)", &process);
  entry->second.program = executableOf(process);
}

void BusClients::nameVanished(GDBusConnection*, const char* name, void* self) noexcept {
  auto& clients = *static_cast<BusClients*>(self);
  const auto entry = clients.clients.find(std::string_view(name));
  if (entry == clients.clients.end()) return;
  g_bus_unwatch_name(entry->second.watch);
  clients.clients.erase(entry);
  if (clients.clients.empty()) clients.haveChanged();
}

}  // namespace sprig::desktop
