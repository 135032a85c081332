// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/Bus.h"

#include <utility>

#include "filemanagers/client/guardCallback.h"
#include "wire/Interface.h"

namespace sprig::filemanagers {

using wire::ErrorPointer;
using wire::ObjectPointer;
using wire::VariantPointer;

struct Bus::Opening {
  Bus* bus;
  ObjectPointer<GCancellable> lifetime;
};

struct Bus::Question {
  const char* interface;
  const char* method;
  VariantPointer arguments;
  const char* replyType;
  Answer answer;
  ObjectPointer<GCancellable> lifetime;
};

namespace {

template <typename T>
ObjectPointer<T> another(T* object) {
  return ObjectPointer<T>(static_cast<T*>(g_object_ref(object)));
}

/// The connection that the file manager has as an application; null when it has none yet.
GDBusConnection* connectionOfApplication() {
  auto* application = g_application_get_default();
  return application ? g_application_get_dbus_connection(application) : nullptr;
}

// GLib wants all these parameters.
// NOLINTNEXTLINE(readability-function-size)
void menuChangedSignal(GDBusConnection* /*connection*/, const char* /*sender*/, const char* /*path*/,
                       const char* /*interface*/, const char* /*signal*/, GVariant* parameters, void* data) {
  if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(t)"))) return;
  std::uint64_t revision = 0;
  g_variant_get(parameters, "(t)", &revision);
  guardCallback([&] { static_cast<Bus::Callbacks*>(data)->menuChanged(revision); });
}

// NOLINTNEXTLINE(readability-function-size): the same.
void propertiesChangedSignal(GDBusConnection* /*connection*/, const char* /*sender*/, const char* /*path*/,
                             const char* /*interface*/, const char* /*signal*/, GVariant* parameters,
                             void* data) {
  if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv}as)"))) return;
  const VariantPointer values(g_variant_get_child_value(parameters, 1));
  guardCallback([&] { static_cast<Bus::Callbacks*>(data)->propertiesChanged(values.get()); });
}

void nameAppeared(GDBusConnection* /*connection*/, const char* /*name*/, const char* /*owner*/, void* data) {
  guardCallback(static_cast<Bus::Callbacks*>(data)->appeared);
}

void nameVanished(GDBusConnection* /*connection*/, const char* /*name*/, void* data) {
  guardCallback(static_cast<Bus::Callbacks*>(data)->vanished);
}

}  // namespace

Bus::Bus(GDBusConnection* given, Callbacks receiver)
    : callbacks(std::move(receiver)), lifetime(g_cancellable_new()) {
  auto* existing = given ? given : connectionOfApplication();
  if (existing) {
    use(existing);
  } else {
    connect();
  }
}

Bus::~Bus() {
  g_cancellable_cancel(lifetime.get());
  if (watch != 0) g_bus_unwatch_name(watch);
  for (const auto subscription : {menuSubscription, propertiesSubscription}) {
    if (subscription != 0) g_dbus_connection_signal_unsubscribe(connection.get(), subscription);
  }
}

void Bus::connect() {
  auto opening = std::make_unique<Opening>(Opening{this, another(lifetime.get())});
  g_bus_get(G_BUS_TYPE_SESSION, lifetime.get(), connected, opening.release());
}

void Bus::connected(GObject* /*source*/, GAsyncResult* result, void* data) {
  const std::unique_ptr<Opening> opening(static_cast<Opening*>(data));
  GError* error = nullptr;
  const ObjectPointer<GDBusConnection> opened(g_bus_get_finish(result, &error));
  const ErrorPointer failure(error);
  if (g_cancellable_is_cancelled(opening->lifetime.get())) return;
  if (opened) {
    guardCallback([&] { opening->bus->use(opened.get()); });
  } else {
    g_warning("There is no session bus to ask for Sprig's menus: %s", error->message);
  }
}

void Bus::use(GDBusConnection* newConnection) {
  connection = another(newConnection);
  if (callbacks.connected) callbacks.connected(*newConnection);
  listen();
  for (auto& question : std::exchange(waiting, {})) send(std::move(question));
}

void Bus::listen() {
  menuSubscription = g_dbus_connection_signal_subscribe(
      connection.get(), wire::busName, wire::interfaceName, "MenuChanged", wire::objectPath, nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE, menuChangedSignal, &callbacks, nullptr);
  propertiesSubscription = g_dbus_connection_signal_subscribe(
      connection.get(), wire::busName, "org.freedesktop.DBus.Properties", "PropertiesChanged",
      wire::objectPath, wire::interfaceName, G_DBUS_SIGNAL_FLAGS_NONE, propertiesChangedSignal, &callbacks,
      nullptr);
  watch = g_bus_watch_name_on_connection(connection.get(), wire::busName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                         nameAppeared, nameVanished, &callbacks, nullptr);
}

void Bus::ask(const char* interface, const char* method, GVariant* arguments, const char* replyType,
              Answer answer) {
  auto question =
      std::make_unique<Question>(Question{interface, method, VariantPointer(g_variant_ref_sink(arguments)),
                                          replyType, std::move(answer), another(lifetime.get())});
  if (connection) {
    send(std::move(question));
  } else {
    waiting.push_back(std::move(question));
  }
}

void Bus::send(std::unique_ptr<Question> question) {
  constexpr int defaultLimit = -1;
  const auto& asked = *question;
  const auto* replyType = asked.replyType ? G_VARIANT_TYPE(asked.replyType) : nullptr;
  g_dbus_connection_call(connection.get(), wire::busName, wire::objectPath, asked.interface, asked.method,
                         asked.arguments.get(), replyType, G_DBUS_CALL_FLAGS_NONE, defaultLimit,
                         lifetime.get(), answered, question.release());
}

void Bus::answered(GObject* source, GAsyncResult* result, void* data) {
  const std::unique_ptr<Question> question(static_cast<Question*>(data));
  GError* error = nullptr;
  const VariantPointer reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error));
  const ErrorPointer failure(error);
  if (g_cancellable_is_cancelled(question->lifetime.get())) return;
  guardCallback([&] { question->answer(reply.get(), error); });
}

VariantPointer Bus::askNow(const char* interface, const char* method, GVariant* arguments,
                           const char* replyType, std::chrono::milliseconds limit, GError** error) {
  const VariantPointer kept(g_variant_ref_sink(arguments));
  return VariantPointer(g_dbus_connection_call_sync(
      connection.get(), wire::busName, wire::objectPath, interface, method, kept.get(),
      G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE, static_cast<int>(limit.count()), nullptr, error));
}

}  // namespace sprig::filemanagers
