// The part of ConfigManager that follows the document: one source on its folder, which sees entries come and
// go, and one on the file itself, which is armed again after every event so that it follows the file across
// saves that replace it.

#include "config/ConfigManager.h"
#include "platform/Platform.h"

namespace sprig {

using platform::FileChangeSource;
using platform::FileEvents;

void ConfigManager::startWatchingConfig() {
  auto& platform = platform::current();
  const auto folder = configURL().deletingLastPathComponent();
  // Refused: then the folder can't be watched either, and there is no folder source.
  static_cast<void>(platform.files.createDirectory(folder));
  dirWatcher = platform.fileChanges.makeFileSystemObjectSource(folder, FileEvents::write);
  if (dirWatcher) {
    dirWatcher->resume([weak = weak_from_this()] {
      if (const auto manager = weak.lock()) manager->loadConfig();
    });
  }
  if (auto source = makeFileSource()) resumeFileSource(std::move(source));
}

std::unique_ptr<FileChangeSource> ConfigManager::makeFileSource() const {
  return platform::current().fileChanges.makeFileSystemObjectSource(
      configURL(), FileEvents::write | FileEvents::deleted | FileEvents::renamed);
}

void ConfigManager::rearmFileWatcher() {
  // The new source collects events before the old one stops, so that a write in between is not missed.
  auto source = makeFileSource();
  if (fileWatcher) fileWatcher->cancel();
  if (source) resumeFileSource(std::move(source));
}

void ConfigManager::resumeFileSource(std::unique_ptr<FileChangeSource> source) {
  // Stored first: the handler may run, and arm the next one, before resume returns.
  fileWatcher = std::move(source);
  fileWatcher->resume([weak = weak_from_this()] {
    if (const auto manager = weak.lock()) {
      manager->loadConfig();
      manager->rearmFileWatcher();
    }
  });
}

}  // namespace sprig
