// SPDX-License-Identifier: GPL-3.0-or-later

// The part of ConfigManager that follows the document: one source on its folder, which sees entries come and
// go; one on the file itself, which is armed again after every event so that it follows the file across saves
// that replace it; and one on each other folder that decides which file that is.

#include <utility>

#include "config/ConfigManager.h"
#include "diag/logSprig.h"
#include "platform/Platform.h"

namespace sprig {

using platform::FileEvents;
using platform::FileURL;

namespace {

/// How often what can't be watched is looked at.
constexpr std::chrono::seconds lookInterval{2};
constexpr auto fileEvents = FileEvents::write | FileEvents::deleted | FileEvents::renamed;

bool isSameFile(const std::optional<platform::FileVersion>& left,
                const std::optional<platform::FileVersion>& right) {
  return left && right ? left->isSameFile(*right) : left.has_value() == right.has_value();
}

}  // namespace

void ConfigManager::startWatchingConfig() {
  // Refused: then the folder can't be watched either, and there is no folder source.
  static_cast<void>(platform::current().files.createDirectory(configURL().deletingLastPathComponent()));
  // In the background: it can take milliseconds, for which the first menu would wait. What is saved before
  // the sources are there is found then.
  callAfter({}, [](ConfigManager& manager) { manager.takeInPlaceChange(); });
}

void ConfigManager::takeInFolderChange() {
  {
    // A file that has come is watched before it is read, so that no write in between is missed.
    const std::lock_guard guard(watching);
    watchFileIfReplaced();
  }
  loadConfig();
  watchAgain();
}

void ConfigManager::takeInFileChange() {
  loadConfig();
  rearmFileWatcher();
  watchAgain();
}

void ConfigManager::takeInPlaceChange() {
  watchAgain();
  if (const auto seen = unloadedDocument()) loadUnlessReported(*seen);
}

/// A save that the other sources have seen, too, is loaded for them: what they report comes first.
void ConfigManager::loadUnlessReported(const Target& seen) {
  callAfter({}, [seen](ConfigManager& manager) {
    const auto now = manager.unloadedDocument();
    if (!now) return;
    if (*now == seen) return manager.loadConfig();
    manager.loadUnlessReported(*now);
  });
}

void ConfigManager::rearmFileWatcher() {
  const std::lock_guard guard(watching);
  watch(fileWatcher, target(configURL()), fileEvents, &ConfigManager::takeInFileChange);
}

void ConfigManager::watchAgain() {
  const std::lock_guard guard(watching);
  isUnwatched = false;
  // One answer for all: the document may come or go meanwhile.
  const auto folder = configURL().deletingLastPathComponent();
  auto others = foldersLeadingToPlaces();
  others.erase(folder);  // has a source of its own
  watchPlaces(others);
  watchFolder(folder);
  // Last, so that no folder is without a source in between.
  std::erase_if(placeWatchers, [&](const auto& entry) {
    const auto& [place, watcher] = entry;
    if (others.contains(place)) return false;
    if (watcher.source) watcher.source->cancel();
    return true;
  });
  watchFileIfReplaced();
  if (!isUnwatched) return;
  if (!std::exchange(isUnwatchedLogged, true)) {
    logSprig("Can't watch every place of config.json; a change may show two seconds later");
  }
  lookAgainLater();
}

void ConfigManager::watchFolder(const FileURL& url) {
  const auto folder = target(url);
  const bool isWatched = dirWatcher.source && dirWatcher.target.url == folder.url;
  if (isWatched && isSameFile(dirWatcher.target.version, folder.version)) return;
  watch(dirWatcher, folder, FileEvents::write, &ConfigManager::takeInFolderChange);
}

void ConfigManager::watchFileIfReplaced() {
  const auto document = target(configURL());
  const bool isWatched = fileWatcher.source && fileWatcher.target.url == document.url;
  if (isWatched && isSameFile(fileWatcher.target.version, document.version)) return;
  watch(fileWatcher, document, fileEvents, &ConfigManager::takeInFileChange);
}

std::set<FileURL> ConfigManager::foldersLeadingToPlaces() {
  std::set<FileURL> folders;
  for (const auto& place : places()) {
    for (auto& folder : platform::current().files.foldersLeadingTo(place)) folders.insert(std::move(folder));
  }
  return folders;
}

void ConfigManager::watchPlaces(const std::set<FileURL>& folders) {
  // From the top, so that what is replaced meanwhile is reported by what is above it.
  for (const auto& folder : folders) {
    auto& watcher = placeWatchers[folder];
    const auto now = target(folder);
    if (watcher.source && isSameFile(watcher.target.version, now.version)) continue;
    const bool isTop = folder.path() == "/";
    watch(watcher, now, isTop ? FileEvents::write | FileEvents::mounted : FileEvents::write,
          &ConfigManager::takeInPlaceChange);
  }
}

void ConfigManager::watch(Watcher& watcher, const Target& target, FileEvents events, Handler handler) {
  // The new source collects events before the old one stops, so that a write in between is not missed.
  auto source = platform::current().fileChanges.makeFileSystemObjectSource(target.url, events);
  if (!source && target.version) {
    // What is there can't be watched. The old source may still tell something.
    isUnwatched = true;
    return;
  }
  watcher.target = target;
  const auto old = std::exchange(watcher.source, std::move(source));
  if (old) old->cancel();
  if (!watcher.source) return;
  watcher.source->resume([weak = weak_from_this(), handler] {
    if (const auto manager = weak.lock()) ((*manager).*handler)();
  });
}

/// Whether or not menus are asked for: whoever keeps them has to hear of a change.
void ConfigManager::lookAgainLater() {
  if (std::exchange(isLookDue, true)) return;
  callAfter(lookInterval, [](ConfigManager& manager) {
    {
      const std::lock_guard guard(manager.watching);
      manager.isLookDue = false;
    }
    manager.takeInPlaceChange();
  });
}

void ConfigManager::callAfter(std::chrono::milliseconds delay, std::function<void(ConfigManager&)> call) {
  platform::current().fileChanges.asyncAfter(delay, [weak = weak_from_this(), call = std::move(call)] {
    if (const auto manager = weak.lock()) call(*manager);
  });
}

}  // namespace sprig
