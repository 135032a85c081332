#pragma once

#include "config/ConfigManager.h"
#include "platform/FileURL.h"

namespace sprig {

/// Keeps a running program in step with a configuration that comes to stand at another place than the one in
/// force at its start, such as the first one a user writes. The store's own watchers follow that first place
/// only.
///
/// Threads: any.
class ConfigFollower {
 public:
  /// Loads the configuration again if it has moved.
  void follow() const {
    if (ConfigManager::configURL() != watched) ConfigManager::shared().reload();
  }

 private:
  const platform::FileURL watched = ConfigManager::configURL();
};

}  // namespace sprig
