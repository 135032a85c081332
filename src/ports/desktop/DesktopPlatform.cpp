#include "ports/desktop/DesktopPlatform.h"

#include <utility>

namespace sprig::desktop {

DesktopPlatform::DesktopPlatform(GDBusConnection& connection, platform::SystemLog& systemLog,
                                 platform::Application& application)
    : workspace(connection),
      fileChanges(inotify, [this] { mainQueue.async([this] { compareConfiguration(); }); }),
      services{files,       users,   process,   clock,  systemLog,   mainQueue,
               fileChanges, volumes, workspace, images, application, controller} {
  scope.emplace(services);
}

void DesktopPlatform::whenConfigurationChanges(std::function<void()> handler) {
  configuration = ConfigManager::shared().getConfig();
  configurationChanged = std::move(handler);
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
