// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "wire/Pointers.h"

namespace sprig::filemanagers {

/// The way to Sprig's extension over the session bus: calls, and news of it.
///
/// A call starts the extension if need be. While the file manager is not on the bus itself, calls in the
/// background wait for that, and others are not possible.
///
/// Threads: main thread; answers and news come from the main loop that is there anyway, and only while this
/// lives.
class Bus {
 public:
  struct Callbacks {
    /// The extension is there, maybe another process than before.
    std::function<void()> appeared;
    std::function<void()> vanished;
    /// Menus of earlier revisions are out of date.
    std::function<void(std::uint64_t revision)> menuChanged;
    /// Of the interface's properties, `values` (a{sv}) are new.
    std::function<void(GVariant* values)> propertiesChanged;
    /// The file manager is on the bus. May be empty.
    std::function<void(GDBusConnection& connection)> connected = nullptr;
  };
  /// Exactly one of both is not null. Neither is the receiver's.
  using Answer = std::function<void(GVariant* reply, const GError* error)>;

  /// Without a connection given, the file manager's own one; opening that never blocks.
  Bus(GDBusConnection* given, Callbacks receiver);
  ~Bus();
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  /// Asks in the background. `arguments` may be floating.
  void ask(const char* interface, const char* method, GVariant* arguments, const char* replyType,
           Answer answer);

  /// Whether `askNow` is possible.
  bool isConnected() const { return connection != nullptr; }

  /// Asks and waits for `limit` at most. `error` is set when nothing comes back. `arguments` may be floating.
  wire::VariantPointer askNow(const char* interface, const char* method, GVariant* arguments,
                              const char* replyType, std::chrono::milliseconds limit, GError** error);

 private:
  // What callbacks hold. Each has the lifetime to tell whether it comes too late.
  struct Opening;
  struct Question;

  void connect();
  void use(GDBusConnection* newConnection);
  void listen();
  void send(std::unique_ptr<Question> question);

  static void connected(GObject* source, GAsyncResult* result, void* data);
  static void answered(GObject* source, GAsyncResult* result, void* data);

  Callbacks callbacks;
  wire::ObjectPointer<GDBusConnection> connection;
  /// Cancelled when this goes.
  wire::ObjectPointer<GCancellable> lifetime;
  std::vector<std::unique_ptr<Question>> waiting;
  guint menuSubscription = 0;
  guint propertiesSubscription = 0;
  guint watch = 0;
};

}  // namespace sprig::filemanagers
