// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/Creation.h"

#include <fcntl.h>
#include <unistd.h>

#include "translation/translated.h"

namespace sprig::ports {

using platform::FileURL;

std::optional<FileIdentity> FileIdentity::of(const FileURL& file) {
  struct stat status = {};
  if (::lstat(file.path().c_str(), &status) == -1 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileIdentity{status.st_ino, static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec,
                      status.st_mtim.tv_nsec};
}

std::optional<Creation> Creation::of(const FileURL& file) {
  const auto identity = FileIdentity::of(file);
  if (!identity) return std::nullopt;
  return Creation{file, *identity};
}

CreationState Creation::state() const {
  const auto now = FileIdentity::of(file);
  if (now == identity) return CreationState::untouched;
  if (now) return now->inode == identity.inode ? CreationState::changed : CreationState::replaced;
  const bool isThere = ::faccessat(AT_FDCWD, file.path().c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
  return isThere ? CreationState::replaced : CreationState::gone;
}

std::string Creation::reasonToKeep(CreationState state) const {
  const auto name = file.lastPathComponent();
  switch (state) {
    case CreationState::changed:
      return translated("“%1%” has been changed since it was created", {name});
    case CreationState::replaced:
      return translated("“%1%” is something else now", {name});
    case CreationState::gone:
      return translated("“%1%” is no longer there", {name});
    case CreationState::untouched:
      break;
  }
  return translated("“%1%” can't be removed", {name});
}

bool Creation::remove() const {
  return state() == CreationState::untouched && ::unlink(file.path().c_str()) == 0;
}

}  // namespace sprig::ports
