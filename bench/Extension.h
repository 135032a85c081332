// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "Home.h"
#include "app/FinderSync.h"
#include "ports/terminal/TerminalPlatform.h"

namespace sprig::bench {

/// The product, as it runs in a terminal, with a configuration and for a folder of its own.
///
/// Threads: as `Home`; then the thread that made it.
class Extension {
 public:
  explicit Extension(const AppConfigItem& config) : home(config) {
    platform.controller().setTargetFolder(home.folder());
  }

  const platform::FileURL& folder() const { return home.folder(); }
  platform::FileURL configFile() const { return home.configFile(); }

  std::unique_ptr<platform::Menu> menu() {
    return finderSync.menu(platform::FIMenuKind::contextualMenuForContainer);
  }

 private:
  Home home;
  terminal::TerminalPlatform platform{terminal::Logging::quiet, terminal::ConfigChanges::followed};
  FinderSync finderSync;
};

}  // namespace sprig::bench
