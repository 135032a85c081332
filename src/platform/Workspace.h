// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "platform/FileURL.h"

namespace sprig::platform {

/// What other programs of the session do for us.
///
/// Threads: main thread. Neither operation waits for the other program.
/// Failure: that no program shows the files is logged by the port; nobody is told.
class Workspace {
 public:
  virtual ~Workspace() = default;

  /// Shows the files selected in a file viewer.
  virtual void activateFileViewerSelecting(const std::vector<FileURL>& files) = 0;

  /// Hands a URL to the program registered for its scheme; false when there is none.
  virtual bool open(const std::string& url) = 0;
};

}  // namespace sprig::platform
