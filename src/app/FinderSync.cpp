// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/FinderSync.h"

#include "config/ConfigManager.h"
#include "diag/logSprig.h"
#include "finder/ContextMenu.h"
#include "finder/ServedFolders.h"
#include "finder/SettingsAction.h"
#include "finder/TemplateAction.h"
#include "finder/TemplateCategories.h"
#include "platform/Platform.h"
#include "translation/translated.h"

namespace sprig {

using platform::FileURL;

FinderSync::FinderSync() : categoryOrder(standardCategoryOrder.begin(), standardCategoryOrder.end()) {
  logSprig("FinderSync init started");
  const auto folders = servedFolders();
  platform::current().finderSyncController.setDirectoryURLs(folders);
  logSprig("Initialized FinderSync monitoring " + std::to_string(folders.size()) + " directory URLs");
  // The first menu shall not wait for the load.
  static_cast<void>(ConfigManager::shared().getConfig());
}

void FinderSync::beginObservingDirectory(const FileURL& location) {
  logSprig("beginObservingDirectory: " + location.path());
}

void FinderSync::endObservingDirectory(const FileURL& location) {
  logSprig("endObservingDirectory: " + location.path());
}

std::string FinderSync::toolbarItemName() const { return "Sprig"; }

std::string FinderSync::toolbarItemToolTip() const { return translated("Create a new file from template"); }

platform::Image FinderSync::toolbarItemImage() const {
  return platform::current().images.systemSymbol("doc.badge.plus", "Sprig").value_or(platform::Image{});
}

std::unique_ptr<platform::Menu> FinderSync::menu(platform::FIMenuKind menuKind) {
  return ContextMenu(menuState, categoryOrder, *this).menu(menuKind);
}

void FinderSync::performAction(platform::Selector action, const platform::MenuItem& sender) {
  if (action == templateActionSelector) templateAction(sender);
  if (action == openSettingsActionSelector) openSettingsAction(sender);
}

void FinderSync::templateAction(const platform::MenuItem& sender) {
  static_cast<void>(performTemplateAction(sender, menuState));
}

void FinderSync::openSettingsAction(const platform::MenuItem&) { performOpenSettingsAction(); }

}  // namespace sprig
