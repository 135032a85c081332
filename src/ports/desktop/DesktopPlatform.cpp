#include "ports/desktop/DesktopPlatform.h"

#include <utility>

#include "finder/ServedFolders.h"

namespace sprig::desktop {

DesktopPlatform::DesktopPlatform(GDBusConnection& connection, platform::SystemLog& systemLog,
                                 platform::Application& application)
    : workspace(connection),
      creations(connection, mainQueue, ports::CreationJournal::userFolder(files, process)),
      fileChanges(inotify, [this] { mainQueue.async([this] { compareConfiguration(); }); }),
      services{files,   users,     process,   clock,  systemLog,   mainQueue, fileChanges,
               volumes, workspace, creations, images, application, controller} {
  scope.emplace(services);
  follower.emplace();
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
  configuration = ConfigManager::shared().getConfig();
  configurationChanged = std::move(handler);
  followFirstDocument();
}

// Without a document anywhere the store watches another folder than the one where users put their first.
void DesktopPlatform::followFirstDocument() {
  const auto folder = files.containerURL(applicationGroupIdentifier);
  if (!folder) return;
  // Refused: then it can't be watched either.
  static_cast<void>(files.createDirectory(*folder));
  configFolder = fileChanges.makeFileSystemObjectSource(*folder, platform::FileEvents::write);
  if (!configFolder) return;
  configFolder->resume([this, weak = ConfigManager::shared().weak_from_this()] {
    if (const auto manager = weak.lock()) follower->follow();
  });
}

void DesktopPlatform::compareConfiguration() {
  if (!configurationChanged) return;
  // Every load makes a new snapshot, and this one keeps the old one from being mistaken for it.
  auto inForce = ConfigManager::shared().getConfig();
  if (inForce == configuration) return;
  configuration = std::move(inForce);
  configurationChanged();
}

}  // namespace sprig::desktop
