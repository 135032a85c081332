// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Clock.h"
#include "platform/FileURL.h"

namespace sprig {

/// Tells what kinds of software project a folder belongs to, from marker files ("package.json", "Cargo.toml")
/// in it and in up to three folders above it, but not above the user's home folder. Only names are looked at.
///
/// Threads:   any; no call waits for another's scan.
/// Failure:   a folder that can't be listed ends the climb; what was found below it counts.
/// Ownership: `shared()` lives as long as the platform. Its cache holds an entry for every folder ever asked
///            about.
class ProjectDetector {
 public:
  /// The one instance, made on first use.
  static ProjectDetector& shared();

  /// The project types of a folder, each once, in no defined order. An answer holds for ten seconds.
  std::vector<std::string> detectProjectTypes(const platform::FileURL& folderURL);

 private:
  struct CacheEntry {
    platform::Instant timestamp;
    std::vector<std::string> types;
  };

  static constexpr std::chrono::duration<double> cacheTTL{10.0};

  static std::vector<std::string> scanDirectoryAndParents(const platform::FileURL& folderURL, int maxDepth);

  std::mutex lock;
  std::unordered_map<std::string, CacheEntry> cache;  // by standardized path; guarded by lock
};

}  // namespace sprig
