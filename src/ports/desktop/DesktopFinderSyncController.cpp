#include "ports/desktop/DesktopFinderSyncController.h"

#include <utility>

namespace sprig::desktop {

using platform::FIMenuKind;

void DesktopFinderSyncController::concern(FIMenuKind kind, std::vector<platform::FileURL> targets) {
  folder.reset();
  items.reset();
  if (kind == FIMenuKind::contextualMenuForItems || kind == FIMenuKind::contextualMenuForSidebar) {
    items = std::move(targets);
  } else if (!targets.empty()) {
    folder = std::move(targets.front());
  }
}

}  // namespace sprig::desktop
