// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/TerminalFinderSyncController.h"

#include <utility>

namespace sprig::terminal {

void TerminalFinderSyncController::setTargetFolder(const platform::FileURL& folder) {
  folderURL = folder;
  itemURLs.reset();
}

void TerminalFinderSyncController::setSelectedItems(std::vector<platform::FileURL> items) {
  folderURL.reset();
  itemURLs = std::move(items);
}

}  // namespace sprig::terminal
