// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FIFinderSyncController.h"

namespace sprig::terminal {

/// What the command line is about, in place of a file manager's window.
class TerminalFinderSyncController final : public platform::FIFinderSyncController {
 public:
  /// The menu concerns the background of `folder`.
  void setTargetFolder(const platform::FileURL& folder);
  /// The menu concerns these items.
  void setSelectedItems(std::vector<platform::FileURL> items);

  /// No one asks for menus but this program itself, for whichever folder its user names.
  void setDirectoryURLs(const std::set<platform::FileURL>&) override {}
  std::optional<platform::FileURL> targetedURL() const override { return folderURL; }
  std::optional<std::vector<platform::FileURL>> selectedItemURLs() const override { return itemURLs; }

 private:
  std::optional<platform::FileURL> folderURL;
  std::optional<std::vector<platform::FileURL>> itemURLs;
};

}  // namespace sprig::terminal
