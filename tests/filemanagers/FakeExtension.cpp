// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/FakeExtension.h"

#include <stdexcept>
#include <utility>

#include "support/uncheckedRows.h"
#include "wire/Interface.h"

namespace sprig::test {

using wire::ObjectPointer;
using wire::VariantPointer;

wire::Row row(std::int32_t parent, wire::Row::Type type, std::string title, std::string action) {
  return {parent, type, std::move(action), std::move(title), {}, {}, true};
}

ObjectPointer<GDBusConnection> PrivateBus::connect() const {
  constexpr int flags =
      G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION;
  auto* connection = g_dbus_connection_new_for_address_sync(
      g_test_dbus_get_bus_address(bus.get()), GDBusConnectionFlags(flags), nullptr, nullptr, nullptr);
  if (!connection) throw std::runtime_error("no connection to the private bus");
  return ObjectPointer<GDBusConnection>(connection);
}

FakeExtension::FakeExtension(const PrivateBus& bus, std::vector<wire::Row> menuRows, Conduct firstConduct)
    : connection(bus.connect()), rows(std::move(menuRows)), conduct(firstConduct) {
  filter = g_dbus_connection_add_filter(connection.get(), received, this, nullptr);
  const VariantPointer owner(g_dbus_connection_call_sync(
      connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "RequestName", g_variant_new("(su)", wire::busName, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
      nullptr));
  if (!owner) throw std::runtime_error("the name is not to be had");
}

FakeExtension::~FakeExtension() {
  g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
  g_dbus_connection_remove_filter(connection.get(), filter);
}

GDBusMessage* FakeExtension::received(GDBusConnection* /*connection*/, GDBusMessage* message,
                                      gboolean isIncoming, void* self) {
  if (!isIncoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL)
    return message;
  static_cast<FakeExtension*>(self)->take(ObjectPointer<GDBusMessage>(message));
  return nullptr;
}

void FakeExtension::take(ObjectPointer<GDBusMessage> call) {
  const std::lock_guard guard(lock);
  const wire::TextPointer arguments(g_variant_print(g_dbus_message_get_body(call.get()), FALSE));
  notes[g_dbus_message_get_member(call.get())].emplace_back(arguments.get());
  if (conduct == Conduct::isSilent) {
    owed.push_back(std::move(call));
  } else {
    answer(call.get());
  }
}

void FakeExtension::answer(GDBusMessage* call) {
  const ObjectPointer<GDBusMessage> reply(
      conduct == Conduct::answers
          ? g_dbus_message_new_method_reply(call)
          : g_dbus_message_new_method_error_literal(call, "com.kestrel.Sprig.Error", "refused"));
  auto* body = conduct == Conduct::answers ? replyTo(g_dbus_message_get_member(call)) : nullptr;
  if (body) g_dbus_message_set_body(reply.get(), body);
  g_dbus_connection_send_message(connection.get(), reply.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                 nullptr);
}

GVariant* FakeExtension::replyTo(const std::string& method) const {
  if (method == "GetMenu") return g_variant_new("(t@ay)", revision, uncheckedRows(rows).get());
  if (method != "GetAll") return nullptr;
  return g_variant_new_parsed(
      "({'ServedFolders': <['file:///home/ann', 'smb://elsewhere/']>, 'ToolbarName': <'Sprig'>, "
      "'ToolbarToolTip': <'New file'>, 'ToolbarIcon': <'document-new'>},)");
}

void FakeExtension::setConduct(Conduct newConduct) {
  const std::lock_guard guard(lock);
  conduct = newConduct;
  if (conduct == Conduct::isSilent) return;
  for (const auto& call : owed) answer(call.get());
  owed.clear();
}

void FakeExtension::changeMenu(std::vector<wire::Row> newRows) {
  const std::lock_guard guard(lock);
  rows = std::move(newRows);
  ++revision;
  g_dbus_connection_emit_signal(connection.get(), nullptr, wire::objectPath, wire::interfaceName,
                                "MenuChanged", g_variant_new("(t)", revision), nullptr);
}

void FakeExtension::changeServedFolder(const char* uri) {
  g_dbus_connection_emit_signal(
      connection.get(), nullptr, wire::objectPath, "org.freedesktop.DBus.Properties", "PropertiesChanged",
      g_variant_new_parsed("(%s, {'ServedFolders': <[%s]>}, @as [])", wire::interfaceName, uri), nullptr);
}

std::size_t FakeExtension::calls(const std::string& method) {
  const std::lock_guard guard(lock);
  return notes[method].size();
}

std::size_t FakeExtension::calls() {
  const std::lock_guard guard(lock);
  std::size_t count = 0;
  for (const auto& [method, arguments] : notes) count += arguments.size();
  return count;
}

std::string FakeExtension::lastCall(const std::string& method) {
  const std::lock_guard guard(lock);
  return notes[method].empty() ? std::string() : notes[method].back();
}

}  // namespace sprig::test
