// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigManager.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

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

/// Why a document couldn't be loaded.
LocalizedText describe(const std::exception& error) {
  if (const auto* decoding = dynamic_cast<const DecodingError*>(&error)) return decoding->sentence();
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr)
    return localized("there is not enough memory for it");
  return std::string(error.what());
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
  std::unique_lock guard(lock);
  loadFinished.wait_for(guard, readersPatience, [this] { return !isLoading; });
  if (cachedConfig) return cachedConfig;
  return std::make_shared<const AppConfigItem>(defaultFallbackConfig());
}

void ConfigManager::onChange(std::function<void()> handler) {
  const std::lock_guard guard(lock);
  changed = std::move(handler);
}

std::optional<std::string> ConfigManager::problem() const {
  const std::lock_guard guard(lock);
  return loadProblem;
}

std::vector<FileURL> ConfigManager::places() {
  const auto& platform = platform::current();
  std::vector<FileURL> result;
  if (const auto container = platform.files.containerURL(applicationGroupIdentifier)) {
    result.push_back(container->appendingPath(relativeConfigPath));
    result.push_back(container->appendingPath(shortConfigName));
  }
  if (const auto home = platform.users.homeDirectory()) {
    result.push_back(home->appendingPath(relativeConfigPath));
  }
  result.push_back(platform.files.homeDirectoryForCurrentUser().appendingPath(relativeConfigPath));
  return result;
}

FileURL ConfigManager::configURL() {
  const auto candidates = places();
  const auto& files = platform::current().files;
  const auto found = std::find_if(candidates.begin(), candidates.end() - 1,
                                  [&](const auto& candidate) { return files.fileExists(candidate); });
  return *found;  // the last one without a look
}

ConfigManager::Target ConfigManager::target(FileURL url) {
  const auto version = platform::current().files.fileVersion(url);
  return {std::move(url), version};
}

void ConfigManager::loadConfig() {
  std::unique_lock guard(lock);
  loadFinished.wait(guard, [this] { return !isLoading; });
  isLoading = true;
  guard.unlock();
  // The version first: what is written while it is read is a later one.
  auto document = target(configURL());
  auto outcome = loadConfigLocked(document.url);
  guard.lock();
  // The old one goes without the lock: readers need not wait for the end of a large one.
  cachedConfig.swap(outcome.config);
  loadProblem = std::move(outcome.problem);
  loaded = std::move(document);
  isLoading = false;
  const auto announce = changed;
  guard.unlock();
  loadFinished.notify_all();
  if (announce) announce();
}

void ConfigManager::reloadIfChanged() {
  if (unloadedDocument()) loadConfig();
}

std::optional<ConfigManager::Target> ConfigManager::unloadedDocument() {
  std::unique_lock guard(lock);
  loadFinished.wait(guard, [this] { return !isLoading; });
  const auto last = loaded;
  guard.unlock();
  auto now = target(configURL());
  return now == last ? std::nullopt : std::optional(std::move(now));
}

ConfigManager::Outcome ConfigManager::loadConfigLocked(const FileURL& url) {
  if (!platform::current().files.fileExists(url)) {
    logSprig("Config not found at " + url.path() + ", using defaultFallbackConfig");
    return {std::make_shared<const AppConfigItem>(defaultFallbackConfig()), {}};
  }
  try {
    auto config = std::make_shared<const AppConfigItem>(readConfig(url));
    const auto& templates = config->templates;
    const auto active =
        std::count_if(templates.begin(), templates.end(), [](const auto& item) { return item.enabled; });
    logSprig("Loaded config with " + std::to_string(templates.size()) + " total templates (" +
             std::to_string(active) + " active) from " + url.path());
    return {std::move(config), {}};
  } catch (const std::exception& error) {
    auto problem = describe(error);
    logSprig("Error decoding config.json: " + problem.english + ". Using fallback.");
    return {std::make_shared<const AppConfigItem>(defaultFallbackConfig()), std::move(problem.shown)};
  }
}

}  // namespace sprig
