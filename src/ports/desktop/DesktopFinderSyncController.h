// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <set>
#include <vector>

#include "platform/FIFinderSync.h"
#include "platform/FIFinderSyncController.h"

namespace sprig::desktop {

/// What the file managers are told of the served folders, and what the menu or click at hand concerns.
class DesktopFinderSyncController final : public platform::FIFinderSyncController {
 public:
  /// From now on, a menu or click of this kind is at hand: on the folder, or on the item, that is its target;
  /// absent for none.
  void setTarget(platform::FIMenuKind kind, std::optional<platform::FileURL> target);

  const std::set<platform::FileURL>& servedFolders() const { return served; }
  /// Whether a file or folder is in one of them, judged by the names alone.
  bool serves(const platform::FileURL& location) const;

  void setDirectoryURLs(const std::set<platform::FileURL>& folders) override { served = folders; }
  std::optional<platform::FileURL> targetedURL() const override { return folder; }
  std::optional<std::vector<platform::FileURL>> selectedItemURLs() const override { return items; }

 private:
  std::set<platform::FileURL> served;
  std::optional<platform::FileURL> folder;
  std::optional<std::vector<platform::FileURL>> items;
};

}  // namespace sprig::desktop
