// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DesktopFinderSyncController.h"

#include <algorithm>
#include <utility>

#include "wire/FileUri.h"

namespace sprig::desktop {

using platform::FileURL;
using platform::FIMenuKind;

void DesktopFinderSyncController::setTarget(FIMenuKind kind, std::optional<FileURL> target) {
  folder.reset();
  items.reset();
  if (kind != FIMenuKind::contextualMenuForItems && kind != FIMenuKind::contextualMenuForSidebar) {
    folder = std::move(target);
  } else if (target) {
    items = {*std::move(target)};
  }
}

bool DesktopFinderSyncController::serves(const FileURL& location) const {
  return std::any_of(served.begin(), served.end(), [&](const FileURL& servedFolder) {
    return wire::isInFolder(location.path(), servedFolder.path());
  });
}

}  // namespace sprig::desktop
