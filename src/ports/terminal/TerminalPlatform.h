// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "platform/Platform.h"
#include "ports/linux/CreationJournal.h"
#include "ports/linux/LinuxClock.h"
#include "ports/linux/LinuxFileSystem.h"
#include "ports/linux/LinuxMainQueue.h"
#include "ports/linux/LinuxProcessInfo.h"
#include "ports/linux/LinuxUserDatabase.h"
#include "ports/linux/MountedVolumes.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/LineReader.h"
#include "ports/terminal/Screen.h"
#include "ports/terminal/TerminalApplication.h"
#include "ports/terminal/TerminalFinderSyncController.h"
#include "ports/terminal/TerminalSymbolImages.h"
#include "ports/terminal/TerminalSystemLog.h"
#include "ports/terminal/TerminalWorkspace.h"

namespace sprig::terminal {

/// Whether a command goes on for so long that it has to take in changes of the configuration.
enum class ConfigChanges { followed, ignored };

/// The product's platform in a terminal, in force for as long as it lives.
///
/// Threads: made and used on the main thread.
class TerminalPlatform {
 public:
  TerminalPlatform(Logging logging, ConfigChanges changes);

  /// Standard error: menus, questions, everything that is not the answer itself.
  const Screen& screen() const { return standardError; }
  LineReader& lines() { return *reader; }
  TerminalApplication& application() { return alerts; }
  TerminalFinderSyncController& controller() { return target; }
  ports::CreationJournal& journal() { return creations; }

  /// Does what waits in the main queue.
  void runPending() { mainQueue.runPending(); }

  /// Reveals or explains what a pick has led to, and tells which it was.
  ExitStatus outcomeOfPick();

 private:
  ports::LinuxMainQueue mainQueue;
  Screen standardError;
  std::unique_ptr<LineReader> reader;
  ports::LinuxFileSystem files;
  ports::LinuxUserDatabase users;
  ports::LinuxProcessInfo process;
  ports::LinuxClock clock;
  TerminalSystemLog systemLog;
  ports::MountedVolumes volumes;
  TerminalWorkspace workspace;
  ports::CreationJournal creations{files.stateDirectory()};
  TerminalSymbolImages images;
  TerminalApplication alerts;
  TerminalFinderSyncController target;
  // The order below matters at the end: first the product's objects go, then the background thread that may
  // still be at work for them, and the platform stays in force until then.
  platform::PlatformScope scope;
  std::unique_ptr<platform::FileChangeSources> fileChanges;
  platform::Platform services;
};

}  // namespace sprig::terminal
