#include "config/ConfigManager.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "config/BuiltinTemplates.h"
#include "config/ConfigDecoder.h"
#include "diag/logSprig.h"
#include "platform/Platform.h"

namespace sprig {

using platform::FileURL;

namespace {

/// Throws for a file that can't be read as for one that can't be decoded: to the user both mean the same.
AppConfigItem readConfig(const FileURL& url) {
  const auto document = platform::current().files.contentsOfFile(url);
  if (!document) throw std::runtime_error(document.error().description);
  return decodeConfig(*document);
}

}  // namespace

ConfigManager& ConfigManager::shared() { return platform::current().shared.get<ConfigManager>(make); }

std::shared_ptr<ConfigManager> ConfigManager::make() {
  std::shared_ptr<ConfigManager> manager(new ConfigManager);
  manager->loadConfig();
  manager->startWatchingConfig();
  return manager;
}

ConfigSnapshot ConfigManager::getConfig() const {
  const std::lock_guard guard(lock);
  if (cachedConfig) return cachedConfig;
  return std::make_shared<const AppConfigItem>(defaultFallbackConfig());
}

std::optional<std::string> ConfigManager::problem() const {
  const std::lock_guard guard(lock);
  return loadProblem;
}

FileURL ConfigManager::configURL() {
  const auto& platform = platform::current();
  if (const auto container = platform.files.containerURL(applicationGroupIdentifier)) {
    for (const auto* path : {relativeConfigPath, shortConfigName}) {
      auto candidate = container->appendingPath(path);
      if (platform.files.fileExists(candidate)) return candidate;
    }
  }
  if (const auto home = platform.users.homeDirectory()) {
    auto candidate = home->appendingPath(relativeConfigPath);
    if (platform.files.fileExists(candidate)) return candidate;
  }
  return platform.files.homeDirectoryForCurrentUser().appendingPath(relativeConfigPath);
}

void ConfigManager::loadConfig() {
  ConfigSnapshot replaced;  // goes after the guard: readers need not wait for the end of a large one
  const std::lock_guard guard(lock);
  replaced = cachedConfig;
  loadConfigLocked(configURL());
}

void ConfigManager::loadConfigLocked(const FileURL& url) {
  loadProblem.reset();
  if (!platform::current().files.fileExists(url)) {
    logSprig("Config not found at " + url.path() + ", using defaultFallbackConfig");
    cachedConfig = std::make_shared<const AppConfigItem>(defaultFallbackConfig());
    return;
  }
  try {
    cachedConfig = std::make_shared<const AppConfigItem>(readConfig(url));
  } catch (const std::exception& error) {
    loadProblem = error.what();
    logSprig("Error decoding config.json: " + *loadProblem + ". Using fallback.");
    cachedConfig = std::make_shared<const AppConfigItem>(defaultFallbackConfig());
    return;
  }
  const auto& templates = cachedConfig->templates;
  const auto active =
      std::count_if(templates.begin(), templates.end(), [](const auto& item) { return item.enabled; });
  logSprig("Loaded config with " + std::to_string(templates.size()) + " total templates (" +
           std::to_string(active) + " active) from " + url.path());
}

}  // namespace sprig
