// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "config/AppConfigItem.h"
#include "platform/FileURL.h"

namespace sprig {

/// Turns one template into one file. No state.
class FileCreator {
 public:
  /// Creates a file in the folder, under a free name, written as a whole, and has it revealed. No file is
  /// ever replaced: a name that another program takes meanwhile is no longer free.
  ///
  /// `customName` is the name the user typed; absent, the template names the file. The folder must exist.
  ///
  /// Threads: any; blocks for the write. The reveal (or the alert that explains a failure) follows on the
  /// main queue. Failure: nothing, and nothing is left in the folder.
  static std::optional<platform::FileURL> createFile(const TemplateItem& item,
                                                     const platform::FileURL& folder,
                                                     const std::optional<std::string>& customName);

  /// Has a modal alert shown later, on the main queue; returns at once. Threads: any.
  static void showErrorDialog(const std::string& message, const std::string& details);
};

}  // namespace sprig
