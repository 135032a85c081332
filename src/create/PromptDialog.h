// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "config/AppConfigItem.h"

namespace sprig {

/// Asks the user for the name of a file about to be created. No state.
///
/// Threads: any. Blocks until the user has answered; the prompt itself runs on the main thread.
class PromptDialog {
 public:
  /// Offers `suggestedFilename` for editing, its base selected. Returns the confirmed name without white
  /// space around it, the suggested one when nothing is left of it; nothing when the user cancels.
  /// `folderName` empty: the current folder.
  static std::optional<std::string> showNamePrompt(const TemplateItem& item,
                                                   const std::string& suggestedFilename,
                                                   const std::string& folderName);

  /// The same without a template record.
  static std::optional<std::string> showNamePrompt(const std::string& templateName,
                                                   const std::string& defaultName = "");
};

}  // namespace sprig
