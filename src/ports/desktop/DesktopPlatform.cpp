// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DesktopPlatform.h"

#include <utility>

#include "finder/ServedFolders.h"

namespace sprig::desktop {

DesktopPlatform::DesktopPlatform(GDBusConnection& connection, platform::SystemLog& systemLog,
                                 platform::Application& application)
    : workspace(connection),
      creations(connection, files.stateDirectory()),
      // In the order in which they are declared there.
      services{files,   users,     process,   clock,  systemLog,   mainQueue, fileChanges,
               volumes, workspace, creations, images, application, controller} {
  scope.emplace(services);
}

void DesktopPlatform::setClick(const Click& click) {
  workspace.setClick(click);
  creations.setClick(click);
}

void DesktopPlatform::followVolumes() {
  if (!servedFoldersChanged) return;
  auto folders = servedFolders(controller.servedFolders());
  if (folders == controller.servedFolders()) return;
  controller.setDirectoryURLs(folders);
  servedFoldersChanged();
}

void DesktopPlatform::whenConfigurationChanges(std::function<void()> handler) {
  configurationChanged = std::move(handler);
  ConfigManager::shared().onChange([this] {
    // Loads that the main thread has not heard of yet are one change to it.
    if (isChangeDue.exchange(true)) return;
    mainQueue.async([this] {
      isChangeDue = false;
      configurationChanged();
    });
  });
}

}  // namespace sprig::desktop
