// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/UserPath.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include "ports/linux/LinuxProcessInfo.h"

namespace sprig::terminal {

using platform::FileURL;

namespace {

bool areSame(const char* left, const char* right) {
  struct stat leftStatus = {};
  struct stat rightStatus = {};
  return ::lstat(left, &leftStatus) == 0 && ::lstat(right, &rightStatus) == 0 &&
         leftStatus.st_dev == rightStatus.st_dev && leftStatus.st_ino == rightStatus.st_ino;
}

bool isSameFolder(const char* left, const char* right) {
  const std::string inLeft = std::string(left) + "/.";
  const std::string inRight = std::string(right) + "/.";
  return areSame(inLeft.c_str(), inRight.c_str());
}

std::string resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real ? real.get() : path;
}

}  // namespace

std::optional<FileURL> currentFolder() {
  const auto logical = ports::LinuxProcessInfo().environment("PWD");
  if (logical && logical->starts_with('/') && isSameFolder(logical->c_str(), ".")) {
    return FileURL(*logical).standardized();
  }
  std::error_code error;
  const auto physical = std::filesystem::current_path(error).string();
  // The system's name for a folder outside of what this program can see begins with "(unreachable)".
  if (!physical.starts_with('/')) return std::nullopt;
  return FileURL(physical);
}

std::optional<FileURL> absoluteLocation(const std::string& path) {
  auto folder = path.starts_with('/') ? FileURL("/") : currentFolder();
  if (!folder) return std::nullopt;
  const auto joined = folder->appendingPath(path);
  auto plain = joined.standardized();
  const char* meant = joined.path().c_str();
  const bool leadsThere = areSame(plain.path().c_str(), meant) || isSameFolder(plain.path().c_str(), meant);
  return leadsThere || kindOf(path) == PathKind::missing ? plain : FileURL(resolved(path));
}

PathKind kindOf(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) == 0) return S_ISDIR(status.st_mode) ? PathKind::folder : PathKind::item;
  return ::lstat(path.c_str(), &status) == 0 ? PathKind::item : PathKind::missing;
}

}  // namespace sprig::terminal
