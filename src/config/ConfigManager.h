// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "config/AppConfigItem.h"
#include "platform/FileChangeSource.h"
#include "platform/FileSystem.h"
#include "platform/FileURL.h"

namespace sprig {

/// A configuration at one moment. It never changes, so sharing it is as good as a copy of one's own.
using ConfigSnapshot = std::shared_ptr<const AppConfigItem>;

/// Owns the configuration in force: finds the document, loads it, watches all its places, announces changes,
/// and falls back to the built-in templates whenever it is missing or broken.
///
/// Threads:   any. Loads happen on the thread that makes the object and later on the background thread of
///            the watchers, one at a time; a reader waits for a load in progress, but no longer than
///            `readersPatience`.
/// Ownership: `shared()` lives as long as the platform, which in a program is for ever.
/// Failure:   never reported to callers; the log says what was wrong.
class ConfigManager : public std::enable_shared_from_this<ConfigManager> {
 public:
  /// The one instance, made on first use: that first call loads the document and starts the watchers.
  static ConfigManager& shared();

  /// An instance of one's own, loaded and watching.
  static std::shared_ptr<ConfigManager> make();

  /// How long a reader waits for a load in progress. File managers wait for a menu a little longer.
  static constexpr std::chrono::milliseconds readersPatience{75};

  /// The configuration last loaded; while a load takes longer than `readersPatience`, the one before it.
  /// Touches no file.
  ConfigSnapshot getConfig() const;
  ConfigSnapshot config() const { return getConfig(); }

  /// Why the built-in templates are in force although there is a document, for people; absent otherwise.
  std::optional<std::string> problem() const;

  /// Loads the document again now.
  void reload() { loadConfig(); }

  /// Loads the document if another file than the one last loaded is in force now, or that one was written
  /// since.
  void reloadIfChanged();

  /// Has `handler` called after each load from now on, on the thread that loaded. Replaces the handler before
  /// it.
  void onChange(std::function<void()> handler);

  /// Where the document is looked for at this moment: the first place that exists among the ones shared with
  /// other programs and the user's, or else the last one, whether or not something is there.
  static platform::FileURL configURL();

 private:
  /// A file or folder at a place, and which version of it; no version where nothing is there.
  struct Target {
    platform::FileURL url{"/"};
    std::optional<platform::FileVersion> version;
    friend bool operator==(const Target&, const Target&) = default;
  };
  /// A source, and what it watches.
  struct Watcher {
    Target target;
    std::unique_ptr<platform::FileChangeSource> source;
  };
  using Handler = void (ConfigManager::*)();

  ConfigManager() = default;

  /// Where the document may stand, the first one first.
  static std::vector<platform::FileURL> places();
  static Target target(platform::FileURL url);

  void loadConfig();
  struct Outcome {
    ConfigSnapshot config;
    std::optional<std::string> problem;
  };
  /// Requires: no other thread loads.
  static Outcome loadConfigLocked(const platform::FileURL& url);

  void startWatchingConfig();
  void takeInFolderChange();
  void takeInFileChange();
  void takeInPlaceChange();
  /// What is in force now, if it is not what was loaded last.
  std::optional<Target> unloadedDocument();
  void loadUnlessReported(const Target& seen);
  void rearmFileWatcher();
  void watchAgain();
  /// Has `call` made by the thread of the sources, unless this has gone by then.
  void callAfter(std::chrono::milliseconds delay, std::function<void(ConfigManager&)> call);
  // Those below require `watching`.
  void lookAgainLater();
  void watchFolder(const platform::FileURL& url);
  void watchFileIfReplaced();
  static std::set<platform::FileURL> foldersLeadingToPlaces();
  void watchPlaces(const std::set<platform::FileURL>& folders);
  void watch(Watcher& watcher, const Target& target, platform::FileEvents events, Handler handler);

  mutable std::mutex lock;
  mutable std::condition_variable loadFinished;
  // Guarded by lock.
  bool isLoading = false;
  ConfigSnapshot cachedConfig;
  std::optional<std::string> loadProblem;
  Target loaded;
  std::function<void()> changed;

  std::mutex watching;
  // Guarded by watching.
  /// Something that decides what is in force can't be watched.
  bool isUnwatched = false;
  bool isLookDue = false;
  bool isUnwatchedLogged = false;
  Watcher fileWatcher;
  Watcher dirWatcher;
  /// Those of the folders above the places, where what comes or goes may bring another document.
  std::map<platform::FileURL, Watcher> placeWatchers;
};

/// The application group whose container holds the document; the settings program names the same one.
inline constexpr const char* applicationGroupIdentifier = "sprig";
/// Where the document stands in a container or home folder, and its short place in a container.
inline constexpr const char* relativeConfigPath = "Library/Application Support/Kestrel/Sprig/config.json";
inline constexpr const char* shortConfigName = "config.json";

}  // namespace sprig
