// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ProjectDetector.h"

#include <array>
#include <set>
#include <string_view>

#include "platform/Platform.h"

namespace sprig {

namespace {

enum class Match { prefix, exact };

struct Marker {
  std::string_view name;
  Match match;
  std::array<std::string_view, 3> types;

  bool matches(std::string_view entry) const {
    return match == Match::prefix ? entry.starts_with(name) : entry == name;
  }
};

constexpr Marker markers[] = {
    {"next.config.", Match::prefix, {"nextjs", "react", "web"}},
    {"vite.config.", Match::prefix, {"vite", "web"}},
    {"astro.config.", Match::prefix, {"astro", "web"}},
    {"nuxt.config.", Match::prefix, {"nuxt", "vue", "web"}},
    {"angular.json", Match::exact, {"angular", "typescript", "web"}},
    {"tsconfig.json", Match::exact, {"typescript"}},
    {"package.json", Match::exact, {"node", "javascript"}},
    {"Cargo.toml", Match::exact, {"rust"}},
    {"go.mod", Match::exact, {"go"}},
    {"pyproject.toml", Match::exact, {"python"}},
    {"requirements.txt", Match::exact, {"python"}},
    {"Pipfile", Match::exact, {"python"}},
    {"composer.json", Match::exact, {"php"}},
    {"Gemfile", Match::exact, {"ruby"}},
    {"Package.swift", Match::exact, {"swift"}},
    {"Dockerfile", Match::exact, {"docker", "devops"}},
    {"docker-compose.yml", Match::exact, {"docker", "devops"}},
    {"docker-compose.yaml", Match::exact, {"docker", "devops"}},
};

/// How many folders above the first one are looked into.
constexpr int highestLevel = 3;

void addTypes(const std::vector<std::string>& entries, std::set<std::string_view>& types) {
  for (const auto& entry : entries) {
    for (const auto& marker : markers) {
      if (!marker.matches(entry)) continue;
      for (const auto type : marker.types) {
        if (!type.empty()) types.insert(type);
      }
    }
  }
}

}  // namespace

ProjectDetector& ProjectDetector::shared() {
  return platform::current().shared.get<ProjectDetector>([] { return std::make_shared<ProjectDetector>(); });
}

std::vector<std::string> ProjectDetector::detectProjectTypes(const platform::FileURL& folderURL) {
  const auto& clock = platform::current().clock;
  const auto key = folderURL.standardized().path();
  {
    const std::lock_guard guard(lock);
    const auto entry = cache.find(key);
    if (entry != cache.end() && clock.now() - entry->second.timestamp < cacheTTL) return entry->second.types;
  }
  auto types = scanDirectoryAndParents(folderURL, highestLevel);
  const std::lock_guard guard(lock);
  cache.insert_or_assign(key, CacheEntry{clock.now(), types});
  return types;
}

std::vector<std::string> ProjectDetector::scanDirectoryAndParents(const platform::FileURL& folderURL,
                                                                  int maxDepth) {
  const auto& files = platform::current().files;
  const auto home = files.homeDirectory();
  std::set<std::string_view> types;
  auto directory = folderURL;
  for (int level = 0; level <= maxDepth; ++level) {
    const auto entries = files.contentsOfDirectory(directory);
    if (!entries) break;
    addTypes(*entries, types);
    if (directory == home || directory.path() == "/") break;
    directory = directory.deletingLastPathComponent();
  }
  return {types.begin(), types.end()};
}

}  // namespace sprig
