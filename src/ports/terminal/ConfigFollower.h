#pragma once

#include "config/ConfigManager.h"
#include "platform/FileURL.h"

namespace sprig::terminal {

/// Keeps a waiting menu in step with a configuration that comes to stand at another place than the one in
/// force at the start, such as the first one a user writes. The watchers, armed at the start, follow that
/// first place only.
///
/// Threads: main thread.
class ConfigFollower {
 public:
  /// Loads the configuration again if it has moved.
  void follow() const {
    if (ConfigManager::configURL() != watched) ConfigManager::shared().reload();
  }

 private:
  const platform::FileURL watched = ConfigManager::configURL();
};

}  // namespace sprig::terminal
