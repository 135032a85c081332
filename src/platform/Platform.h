// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <typeindex>

#include "platform/Application.h"
#include "platform/Clock.h"
#include "platform/Creations.h"
#include "platform/FIFinderSyncController.h"
#include "platform/FileChangeSource.h"
#include "platform/FileSystem.h"
#include "platform/Image.h"
#include "platform/MainQueue.h"
#include "platform/ProcessInfo.h"
#include "platform/SystemLog.h"
#include "platform/UserDatabase.h"
#include "platform/Volumes.h"
#include "platform/Workspace.h"

namespace sprig::platform {

/// Objects that exist once for a platform, each made on first use.
///
/// Threads:   any; each object is made exactly once, however many threads ask first.
/// Ownership: the objects live as long as this does. In a program that is for ever.
class SharedObjects {
 public:
  template <typename T, typename Make>
  T& get(Make make) {
    Slot& slot = slotFor(typeid(T));
    std::call_once(slot.made, [&] { slot.object = make(); });
    return *static_cast<T*>(slot.object.get());
  }

 private:
  struct Slot {
    std::once_flag made;
    std::shared_ptr<void> object;
  };

  Slot& slotFor(std::type_index type) {
    const std::lock_guard guard(lock);
    return slots[type];
  }

  std::mutex lock;
  std::map<std::type_index, Slot> slots;  // guarded by lock; a slot never moves
};

/// Everything the product asks of the platform it runs on. A port fills it with its services, which it owns
/// and which outlive it.
struct Platform {
  FileSystem& files;
  UserDatabase& users;
  ProcessInfo& process;
  Clock& clock;
  SystemLog& systemLog;
  MainQueue& mainQueue;
  FileChangeSources& fileChanges;
  Volumes& volumes;
  Workspace& workspace;
  Creations& creations;
  SymbolImages& images;
  Application& application;
  FIFinderSyncController& finderSyncController;
  SharedObjects shared = {};
};

/// The platform in force. Requires: a `PlatformScope` lives.
///
/// Threads: any.
Platform& current();

/// Puts a platform in force for as long as it lives, then the one before it again.
///
/// Threads: made and destroyed while no other thread uses the platform.
class PlatformScope {
 public:
  explicit PlatformScope(Platform& platform);
  ~PlatformScope();
  PlatformScope(const PlatformScope&) = delete;
  PlatformScope& operator=(const PlatformScope&) = delete;

 private:
  Platform* previous;
};

}  // namespace sprig::platform
