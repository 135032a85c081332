// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>

#include "platform/FIFinderSync.h"
#include "ports/desktop/BusClients.h"
#include "ports/desktop/CallRate.h"
#include "ports/desktop/Click.h"
#include "ports/desktop/DesktopFinderSyncController.h"
#include "ports/desktop/GLibMainQueue.h"
#include "ports/desktop/IdleTimer.h"
#include "ports/desktop/MenuContext.h"
#include "ports/desktop/OfferedMenus.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

/// What of the port a service works with; all of it outlives the service.
struct ServiceDependencies {
  GDBusConnection& connection;
  GLibMainQueue& mainQueue;
  DesktopFinderSyncController& controller;
  /// Told where a pick comes from before it is performed, for whatever shows windows.
  std::function<void(const Click&)> setClick;
  /// Brings the open window to the front, with the activation token of a click that has to wait for it.
  std::function<void(const std::string&)> comeToFront;
};

/// The extension on the bus: answers file managers for as long as one is there, and performs what they pick,
/// one pick after the other.
///
/// Threads:   main thread, which must own the default main context.
/// Ownership: the extension and the dependencies outlive this.
/// Failure:   a call that makes no sense gets an error reply and changes nothing.
class ExtensionService {
 public:
  struct Times {
    /// How long it stays after the last client has gone.
    std::chrono::milliseconds idle = std::chrono::minutes(1);
    /// How often it gives memory back, and looks whether its program has been upgraded or removed. It stays
    /// when there has been a pick since the look before: that may still be about to show its file.
    std::chrono::milliseconds look = std::chrono::minutes(1);
  };

  ExtensionService(ServiceDependencies serviceDependencies, platform::FIFinderSync& finderSync, Times chosen);
  ~ExtensionService();
  ExtensionService(const ExtensionService&) = delete;
  ExtensionService& operator=(const ExtensionService&) = delete;

  /// Serves until nobody needs it any more, somebody else has the name on the bus, or, between two picks, the
  /// program's file has gone: the next call starts the one that has come instead. Called once.
  void run();

  /// Tells the clients that menus differ from those they have.
  void announceMenus();

  /// Tells the clients that other folders are served than before.
  void announceServedFolders();

 private:
  struct Pick {
    std::string action;
    std::string title;
    MenuContext context;
    Click click;
  };

  static void methodCalled(GDBusConnection* connection, const char* sender, const char* path,
                           const char* interface, const char* method, GVariant* parameters,
                           GDBusMethodInvocation* invocation, void* self) noexcept;
  static GVariant* propertyAsked(GDBusConnection* connection, const char* sender, const char* path,
                                 const char* interface, const char* property, GError** error,
                                 void* self) noexcept;
  static void nameLost(GDBusConnection* connection, const char* name, void* self) noexcept;

  /// The answers to the calls, not floating. Failure: throws `CallError`.
  wire::VariantPointer getMenu(GVariant* parameters);
  wire::VariantPointer activate(GVariant* parameters, const std::string& sender);
  wire::VariantPointer observe(const std::string& method, GVariant* parameters);
  wire::VariantPointer answer(const std::string& method, GVariant* parameters, const std::string& sender);
  GVariant* property(const std::string& name) const;
  GVariant* servedFolders() const;

  void exportObject();
  void performPicks();
  void perform(const Pick& pick);
  void leave();
  void watchIdleness();
  static gboolean lookAtProgram(void* self) noexcept;

  ServiceDependencies dependencies;
  platform::FIFinderSync& extension;
  OfferedMenus menus;
  BusClients clients;
  IdleTimer idleTimer;
  std::deque<Pick> picks;
  /// Each such call is a line in the log. People open folders less often.
  CallRate observations{100, 10};
  std::uint64_t revision = 1;
  const Times times;
  bool isPerforming = false;
  bool hasPerformed = false;
  bool isOver = false;
  guint object = 0;
};

}  // namespace sprig::desktop
