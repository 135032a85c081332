// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <atomic>
#include <functional>
#include <optional>
#include <utility>

#include "config/ConfigManager.h"
#include "platform/Platform.h"
#include "ports/desktop/DesktopCreations.h"
#include "ports/desktop/DesktopFinderSyncController.h"
#include "ports/desktop/DesktopSymbolImages.h"
#include "ports/desktop/DesktopWorkspace.h"
#include "ports/desktop/GLibMainQueue.h"
#include "ports/desktop/MountWatch.h"
#include "ports/linux/InotifyFileChangeSources.h"
#include "ports/linux/LinuxClock.h"
#include "ports/linux/LinuxFileSystem.h"
#include "ports/linux/LinuxProcessInfo.h"
#include "ports/linux/LinuxUserDatabase.h"
#include "ports/linux/MountedVolumes.h"

namespace sprig::desktop {

/// The product's platform behind file managers, in force for as long as it lives.
///
/// Threads:   made and used on the main thread.
/// Ownership: the arguments outlive this.
class DesktopPlatform {
 public:
  DesktopPlatform(GDBusConnection& connection, platform::SystemLog& systemLog,
                  platform::Application& application);

  GLibMainQueue& queue() { return mainQueue; }
  DesktopFinderSyncController& finderSyncController() { return controller; }

  /// What is created and shown from now on was asked for by this click.
  void setClick(const Click& click);

  /// Has `handler` called, on the main thread, each time that another configuration is in force. Called once,
  /// when the product has been started.
  void whenConfigurationChanges(std::function<void()> handler);

  /// Keeps the served folders in step with what is mounted, and has `handler` called, on the main thread,
  /// when they have changed. Called once, when the product has been started.
  void whenServedFoldersChange(std::function<void()> handler) { servedFoldersChanged = std::move(handler); }

 private:
  void followVolumes();

  GLibMainQueue mainQueue;
  ports::LinuxFileSystem files;
  ports::LinuxUserDatabase users;
  ports::LinuxProcessInfo process;
  ports::LinuxClock clock;
  ports::MountedVolumes volumes;
  DesktopWorkspace workspace;
  DesktopCreations creations;
  DesktopSymbolImages images;
  DesktopFinderSyncController controller;
  /// Made before the product asks what is mounted, so that it misses nothing.
  MountWatch mounts{[this] { followVolumes(); }};
  std::function<void()> servedFoldersChanged;
  std::function<void()> configurationChanged;
  std::atomic<bool> isChangeDue = false;
  // The order below matters at the end: first the product's objects go, then the background thread that may
  // still be at work for them, and the platform stays in force until then.
  std::optional<platform::PlatformScope> scope;
  ports::InotifyFileChangeSources fileChanges;
  platform::Platform services;
};

}  // namespace sprig::desktop
