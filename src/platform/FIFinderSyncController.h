// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <set>
#include <vector>

#include "platform/FileURL.h"

namespace sprig::platform {

/// The file manager's side of the extension: which folders are served, and what the current menu or click
/// concerns.
///
/// Threads: main thread. Ownership: all answers are copies. Failure: none; what is not known is absent.
class FIFinderSyncController {
 public:
  virtual ~FIFinderSyncController() = default;

  /// The folders, with all they hold, for which the file manager shall ask for menus.
  virtual void setDirectoryURLs(const std::set<FileURL>& folders) = 0;

  /// The folder whose background or toolbar was clicked; absent for menus on items and in the sidebar.
  virtual std::optional<FileURL> targetedURL() const = 0;

  /// The selected items in the file manager's order; absent when it has no selection to tell of.
  virtual std::optional<std::vector<FileURL>> selectedItemURLs() const = 0;
};

}  // namespace sprig::platform
