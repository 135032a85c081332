// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/OpenFolder.h"

#include <fcntl.h>
#include <linux/stat.h>

#include <cstdint>

#include "ports/linux/retrying.h"

namespace sprig::ports {

OpenFolder::OpenFolder(SystemCalls& systemCalls, const platform::FileURL& location)
    : calls(systemCalls), folder(systemCalls, AT_FDCWD, location.path().c_str(), O_PATH | O_DIRECTORY) {}

bool OpenFolder::isAppendOnly() const {
  std::uint64_t attributes = 0;
  const int outcome = retrying([&] { return calls.attributes(descriptor(), attributes); });
  return outcome == -1 || (attributes & STATX_ATTR_APPEND) != 0;
}

std::optional<struct stat> OpenFolder::entry(const char* name) const {
  struct stat status = {};
  const int outcome =
      retrying([&] { return calls.statusAt(descriptor(), name, status, AT_SYMLINK_NOFOLLOW); });
  return outcome == 0 ? std::optional(status) : std::nullopt;
}

bool OpenFolder::isLinkWithoutTarget(const char* name) const {
  const auto link = entry(name);
  struct stat target = {};
  return link && S_ISLNK(link->st_mode) &&
         retrying([&] { return calls.statusAt(descriptor(), name, target, 0); }) == -1;
}

platform::FileVersion versionOf(const struct stat& found) {
  constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
  return {found.st_dev, found.st_ino, found.st_size,
          found.st_mtim.tv_sec * nanosecondsPerSecond + found.st_mtim.tv_nsec};
}

bool isSameFile(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

}  // namespace sprig::ports
