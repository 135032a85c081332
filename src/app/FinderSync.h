// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "finder/MenuState.h"
#include "platform/FIFinderSync.h"

namespace sprig {

/// The extension: what a file manager talks to. Making it registers the served folders (the home folder and
/// the mounted volumes, as they are then) and loads the configuration.
///
/// Threads: main thread. Ownership: one object lives as long as the extension runs, and outlives its menus.
class FinderSync : public platform::FIFinderSync {
 public:
  FinderSync();

  void beginObservingDirectory(const platform::FileURL& location) override;
  void endObservingDirectory(const platform::FileURL& location) override;

  std::string toolbarItemName() const override;
  std::string toolbarItemToolTip() const override;
  platform::Image toolbarItemImage() const override;

  std::unique_ptr<platform::Menu> menu(platform::FIMenuKind menuKind) override;
  void performAction(platform::Selector action, const platform::MenuItem& sender) override;

  void templateAction(const platform::MenuItem& sender);
  void openSettingsAction(const platform::MenuItem& sender);

 private:
  const std::vector<std::string> categoryOrder;
  /// `templateCache` and `lastTargetFolderURL`: filled by menus, read by picks.
  MenuState menuState;
};

}  // namespace sprig
