// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <functional>
#include <optional>
#include <string>

#include "wire/Pointers.h"

namespace sprig::desktop {

/// What a notification says.
struct NotificationText {
  std::string title;
  /// Plain text; empty for none.
  std::string body;
  /// The button's label; empty for none.
  std::string button;
};

/// The one notification of Sprig, shown by the session's notification service
/// (`org.freedesktop.Notifications`): transient, of low urgency, each in the place of the one before. Where
/// the service has no buttons, or there is none, nothing is shown.
///
/// Threads:   main thread; answers come in through its main context, which must not run any more once this
/// has
///            gone. No call waits for the service.
/// Ownership: holds the connection. Withdraws the notification when it goes, as nobody would see its button
///            pressed.
/// Failure:   silent.
class Notification {
 public:
  using Handler = std::function<void()>;

  explicit Notification(GDBusConnection& connection);
  ~Notification();
  Notification(const Notification&) = delete;
  Notification& operator=(const Notification&) = delete;

  /// Calls `pressed`, at most once, if the user presses the button; not for a click on the notification
  /// itself. While the service is still being asked, only the last of several waits.
  void show(NotificationText text, Handler pressed = {});

 private:
  struct Content {
    NotificationText text;
    Handler pressed;
    std::string key;
  };

  using Answered = void (Notification::*)(GVariant* answer);
  void call(const char* method, GVariant* parameters, const char* type, Answered answered);
  static void serviceAnswered(GObject* connection, GAsyncResult* result, void* call) noexcept;
  static void signalled(GDBusConnection* connection, const char* sender, const char* path,
                        const char* interface, const char* signal, GVariant* parameters, void* self) noexcept;
  static void ownerChanged(GDBusConnection* connection, const char* sender, const char* path,
                           const char* interface, const char* signal, GVariant* parameters,
                           void* self) noexcept;

  void subscribe();
  void askService();
  void capabilitiesKnown(GVariant* answer);
  void shown(GVariant* answer);
  void buttonPressed(std::uint32_t number, const std::string& key);

  const wire::ObjectPointer<GDBusConnection> bus;
  std::optional<Content> waiting;
  /// Those whose button can still be pressed: one that is being replaced may have been pressed before.
  std::optional<Content> current;
  std::optional<Content> previous;
  bool isAsking = false;
  bool isOpen = false;
  std::uint32_t id = 0;  // the service's; 0 before the first
  unsigned keys = 0;
  guint subscription = 0;
  guint ownerSubscription = 0;
};

}  // namespace sprig::desktop
