// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/Notification.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace sprig::desktop {

using wire::VariantPointer;

namespace {

constexpr const char* serviceName = "org.freedesktop.Notifications";
constexpr const char* servicePath = "/org/freedesktop/Notifications";
constexpr const char* desktopEntry = "com.kestrel.Sprig";

/// A text that may go over the bus, which takes UTF-8 only.
wire::TextPointer sendable(const std::string& text) {
  return wire::TextPointer(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
}

GVariant* hints() {
  constexpr guchar lowUrgency = 0;
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&builder, "{sv}", "transient", g_variant_new_boolean(TRUE));
  g_variant_builder_add(&builder, "{sv}", "urgency", g_variant_new_byte(lowUrgency));
  g_variant_builder_add(&builder, "{sv}", "desktop-entry", g_variant_new_string(desktopEntry));
  return g_variant_builder_end(&builder);
}

GVariant* buttons(const std::string& key, const std::string& label) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_STRING_ARRAY);
  if (!label.empty()) {
    g_variant_builder_add(&builder, "s", key.c_str());
    g_variant_builder_add(&builder, "s", label.c_str());
  }
  return g_variant_builder_end(&builder);
}

}  // namespace

Notification::Notification(GDBusConnection& connection)
    : bus(static_cast<GDBusConnection*>(g_object_ref(&connection))) {}

Notification::~Notification() {
  for (const auto number : {subscription, ownerSubscription}) {
    if (number != 0) g_dbus_connection_signal_unsubscribe(bus.get(), number);
  }
  if (!isOpen) return;
  g_dbus_connection_call(bus.get(), serviceName, servicePath, serviceName, "CloseNotification",
                         g_variant_new("(u)", id), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr,
                         nullptr, nullptr);
  g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
}

void Notification::show(NotificationText text, Handler pressed) {
  waiting = Content{std::move(text), std::move(pressed), "undo-" + std::to_string(++keys)};
  if (!isAsking) askService();
}

void Notification::subscribe() {
  subscription =
      g_dbus_connection_signal_subscribe(bus.get(), serviceName, serviceName, nullptr, servicePath, nullptr,
                                         G_DBUS_SIGNAL_FLAGS_NONE, signalled, this, nullptr);
  constexpr const char* daemon = "org.freedesktop.DBus";
  ownerSubscription = g_dbus_connection_signal_subscribe(
      bus.get(), daemon, daemon, "NameOwnerChanged", "/org/freedesktop/DBus", serviceName,
      G_DBUS_SIGNAL_FLAGS_NONE, ownerChanged, this, nullptr);
}

// Asked each time, as another service may have taken the place of the one before.
void Notification::askService() {
  if (!waiting) return;
  if (subscription == 0) subscribe();
  call("GetCapabilities", nullptr, "(as)", &Notification::capabilitiesKnown);
}

void Notification::call(const char* method, GVariant* parameters, const char* type, Answered answered) {
  constexpr int patience = 5000;  // milliseconds, the service's start included
  isAsking = true;
  auto waitingCall = std::make_unique<std::pair<Notification*, Answered>>(this, answered);
  g_dbus_connection_call(bus.get(), serviceName, servicePath, serviceName, method, parameters,
                         G_VARIANT_TYPE(type), G_DBUS_CALL_FLAGS_NONE, patience, nullptr, serviceAnswered,
                         waitingCall.release());
}

void Notification::serviceAnswered(GObject* connection, GAsyncResult* result, void* call) noexcept {
  const std::unique_ptr<std::pair<Notification*, Answered>> waitingCall(
      static_cast<std::pair<Notification*, Answered>*>(call));
  const auto& [self, answered] = *waitingCall;
  const VariantPointer answer(
      g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(connection), result, nullptr));
  self->isAsking = false;
  if (answer) {
    (self->*answered)(answer.get());
  } else {
    self->waiting.reset();
  }
}

void Notification::capabilitiesKnown(GVariant* answer) {
  const VariantPointer list(g_variant_get_child_value(answer, 0));
  const std::unique_ptr<const char*, wire::Releaser<g_free>> words(g_variant_get_strv(list.get(), nullptr));
  if (g_strv_contains(words.get(), "actions") == FALSE) return waiting.reset();
  previous = std::exchange(current, std::exchange(waiting, std::nullopt));
  const auto& text = current->text;
  auto body = sendable(text.body);
  if (g_strv_contains(words.get(), "body-markup") != FALSE) body.reset(g_markup_escape_text(body.get(), -1));
  auto* parameters =
      g_variant_new("(susss@as@a{sv}i)", "Sprig", isOpen ? id : 0, desktopEntry, sendable(text.title).get(),
                    body.get(), buttons(current->key, text.button), hints(), -1);
  call("Notify", parameters, "(u)", &Notification::shown);
}

void Notification::shown(GVariant* answer) {
  g_variant_get(answer, "(u)", &id);
  isOpen = true;
  askService();
}

// The parameters are what the bus library passes.
// NOLINTNEXTLINE(readability-function-size)
void Notification::signalled(GDBusConnection*, const char*, const char*, const char*, const char* signal,
                             GVariant* parameters, void* self) noexcept {
  auto& notification = *static_cast<Notification*>(self);
  std::uint32_t number = 0;
  if (g_str_equal(signal, "ActionInvoked") != FALSE &&
      g_variant_is_of_type(parameters, G_VARIANT_TYPE("(us)")) != FALSE) {
    const char* key = nullptr;
    g_variant_get(parameters, "(u&s)", &number, &key);
    notification.buttonPressed(number, key);
  } else if (g_str_equal(signal, "NotificationClosed") != FALSE &&
             g_variant_is_of_type(parameters, G_VARIANT_TYPE("(uu)")) != FALSE) {
    g_variant_get(parameters, "(uu)", &number, nullptr);
    if (number == notification.id) notification.isOpen = false;
  }
}

// Its numbers begin anew with another service, which may give ours to another program's notification.
// NOLINTNEXTLINE(readability-function-size): the parameters are what the bus library passes.
void Notification::ownerChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                                GVariant*, void* self) noexcept {
  auto& notification = *static_cast<Notification*>(self);
  notification.isOpen = false;
  notification.id = 0;
}

void Notification::buttonPressed(std::uint32_t number, const std::string& key) {
  if (number != id) return;
  for (auto* content : {&current, &previous}) {
    if (!*content || (*content)->key != key) continue;
    const auto pressed = std::exchange((*content)->pressed, {});
    if (pressed) pressed();
    return;
  }
}

}  // namespace sprig::desktop
