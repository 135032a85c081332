#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "config/AppConfigItem.h"
#include "platform/FileChangeSource.h"
#include "platform/FileURL.h"

namespace sprig {

/// A configuration at one moment. It never changes, so sharing it is as good as a copy of one's own.
using ConfigSnapshot = std::shared_ptr<const AppConfigItem>;

/// Owns the configuration in force: finds the document, loads it, watches it, and falls back to the built-in
/// templates whenever it is missing or broken.
///
/// Threads:   any. Loads happen on the thread that makes the object and later on the background thread of
///            the watchers; a reader waits for a load in progress.
/// Ownership: `shared()` lives as long as the platform, which in a program is for ever.
/// Failure:   never reported to callers; the log says what was wrong.
class ConfigManager : public std::enable_shared_from_this<ConfigManager> {
 public:
  /// The one instance, made on first use: that first call loads the document and starts the watchers.
  static ConfigManager& shared();

  /// An instance of one's own, loaded and watching.
  static std::shared_ptr<ConfigManager> make();

  /// The configuration last loaded. Touches no file.
  ConfigSnapshot getConfig() const;
  ConfigSnapshot config() const { return getConfig(); }

  /// Why the built-in templates are in force although there is a document; absent otherwise.
  std::optional<std::string> problem() const;

  /// Loads the document again now.
  void reload() { loadConfig(); }

  /// Where the document is looked for at this moment: the first place that exists among the ones shared with
  /// other programs and the user's, or else the last one, whether or not something is there.
  static platform::FileURL configURL();

 private:
  ConfigManager() = default;

  void loadConfig();
  /// Requires: `lock` is held.
  void loadConfigLocked(const platform::FileURL& url);

  void startWatchingConfig();
  void rearmFileWatcher();
  std::unique_ptr<platform::FileChangeSource> makeFileSource() const;
  void resumeFileSource(std::unique_ptr<platform::FileChangeSource> source);

  mutable std::mutex lock;
  ConfigSnapshot cachedConfig;             // guarded by lock
  std::optional<std::string> loadProblem;  // guarded by lock

  // Written while the object is made, then only by the handler of the file's own source.
  std::unique_ptr<platform::FileChangeSource> fileWatcher;
  std::unique_ptr<platform::FileChangeSource> dirWatcher;
};

/// The application group whose container holds the document; the settings program names the same one.
inline constexpr const char* applicationGroupIdentifier = "sprig";
/// Where the document stands in a container or home folder, and its short place in a container.
inline constexpr const char* relativeConfigPath = "Library/Application Support/Kestrel/Sprig/config.json";
inline constexpr const char* shortConfigName = "config.json";

}  // namespace sprig
