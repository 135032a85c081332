// SPDX-License-Identifier: GPL-3.0-or-later

// The part of ConfigManager that follows the document: one source on its folder, which sees entries come and
// go; one on the file itself, which is armed again after every event so that it follows the file across saves
// that replace it; and one on each other folder that decides which file that is.

#include <set>
#include <utility>

#include "config/ConfigManager.h"
#include "diag/logSprig.h"
#include "platform/Platform.h"

namespace sprig {

using platform::FileEvents;
using platform::FileURL;

namespace {

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
  watchAgain();
  // For what was saved before the sources were there.
  reloadIfChanged();
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
  reloadIfChanged();
}

void ConfigManager::rearmFileWatcher() {
  const std::lock_guard guard(watching);
  watch(fileWatcher, target(configURL()), fileEvents, &ConfigManager::takeInFileChange);
}

void ConfigManager::watchAgain() {
  const std::lock_guard guard(watching);
  isUnwatched = false;
  watchPlaces();
  watchFolder();
  watchFileIfReplaced();
  if (isUnwatched && !std::exchange(isUnwatchedLogged, true)) {
    logSprig("Can't watch every place of config.json; a change may show one menu later");
  }
}

void ConfigManager::watchFolder() {
  const auto folder = target(configURL().deletingLastPathComponent());
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

void ConfigManager::watchPlaces() {
  const auto& files = platform::current().files;
  std::set<FileURL> wanted;
  for (const auto& place : places()) {
    for (auto& folder : files.foldersLeadingTo(place)) wanted.insert(std::move(folder));
  }
  wanted.erase(configURL().deletingLastPathComponent());  // has a source of its own
  std::erase_if(placeWatchers, [&](const auto& entry) { return !wanted.contains(entry.first); });
  // From the top, so that what is replaced meanwhile is reported by what is above it.
  for (const auto& folder : wanted) {
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

void ConfigManager::lookIfUnwatched() const {
  if (!isUnwatched) return;
  {
    const std::lock_guard guard(lock);
    const auto now = std::chrono::steady_clock::now();
    if (now - lastLook < lookInterval) return;
    lastLook = now;
  }
  const auto self = std::const_pointer_cast<ConfigManager>(shared_from_this());
  platform::current().fileChanges.async([weak = std::weak_ptr(self)] {
    if (const auto manager = weak.lock()) manager->takeInPlaceChange();
  });
}

}  // namespace sprig
