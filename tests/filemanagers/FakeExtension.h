// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "support/Eventually.h"
#include "wire/Pointers.h"
#include "wire/Rows.h"

namespace sprig::test {

wire::Row row(std::int32_t parent, wire::Row::Type type, std::string title = {}, std::string action = {});

/// Runs what waits in the main loop until a condition holds; whether it does in time.
template <typename Condition>
bool comesTrue(Condition condition) {
  return eventually([&] {
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    return condition();
  });
}

/// A bus without services. Gone with this.
class PrivateBus {
 public:
  PrivateBus() { g_test_dbus_up(bus.get()); }
  ~PrivateBus() { g_test_dbus_stop(bus.get()); }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// A connection that nobody else has.
  wire::ObjectPointer<GDBusConnection> connect() const;

 private:
  wire::ObjectPointer<GTestDBus> bus{g_test_dbus_new(G_TEST_DBUS_NONE)};
};

/// An extension whose conduct tests choose. It is on the bus as long as it lives, and serves "/home/ann".
///
/// Threads: any. It answers in the thread of the bus, so that a caller may wait for it in the main thread.
class FakeExtension {
 public:
  enum class Conduct { answers, refuses, isSilent };

  FakeExtension(const PrivateBus& bus, std::vector<wire::Row> rows, Conduct conduct = Conduct::answers);
  ~FakeExtension();
  FakeExtension(const FakeExtension&) = delete;
  FakeExtension& operator=(const FakeExtension&) = delete;

  /// When it is silent no longer, it answers what it owes.
  void setConduct(Conduct newConduct);
  /// Has another menu from now on, and says so. What is wrong with the rows goes out as it is.
  void changeMenu(std::vector<wire::Row> newRows);
  /// Says that it serves this folder and no other.
  void changeServedFolder(const char* uri);

  /// How often a method was called.
  std::size_t calls(const std::string& method);
  std::size_t calls();
  /// The arguments of the last call of a method, printed; empty when there was none.
  std::string lastCall(const std::string& method);

 private:
  static GDBusMessage* received(GDBusConnection* connection, GDBusMessage* message, gboolean isIncoming,
                                void* self);
  void take(wire::ObjectPointer<GDBusMessage> call);
  void answer(GDBusMessage* call);
  GVariant* replyTo(const std::string& method) const;

  wire::ObjectPointer<GDBusConnection> connection;
  guint filter = 0;

  std::mutex lock;  // guards what follows
  std::vector<wire::Row> rows;
  std::uint64_t revision = 1;
  Conduct conduct;
  std::vector<wire::ObjectPointer<GDBusMessage>> owed;
  std::map<std::string, std::vector<std::string>> notes;
};

}  // namespace sprig::test
