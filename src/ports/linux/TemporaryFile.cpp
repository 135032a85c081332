// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/TemporaryFile.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

#include "ports/linux/FileError.h"
#include "ports/linux/retrying.h"

namespace sprig::ports {

using platform::Error;
using platform::FileURL;
using platform::FileVersion;

namespace {

constexpr mode_t newFileMode = 0666;
constexpr std::size_t pieceSize = std::size_t{4} << 20U;
/// How long the folder's lock is waited for. Who holds it longer has stopped, or isn't one of us.
constexpr auto lockPatience = std::chrono::seconds(1);

/// Of fixed length: the longest permitted target name would leave no room for an addition to it.
std::string randomName() {
  std::uint64_t number = 0;
  arc4random_buf(&number, sizeof number);
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), ".sprig-%016" PRIx64, number);
  return name.data();
}

/// Whether a file system says so when it can't rename as it was asked to.
bool meansNoSuchRename(int code) { return code == EINVAL || code == ENOSYS || code == EOPNOTSUPP; }

/// Whether a file system says so when it has no second names, or gives this file none; or a guard that allows
/// programs no links.
bool meansNoLinks(int code) {
  return meansNoSuchRename(code) || code == EPERM || code == EMLINK || code == EACCES;
}

}  // namespace

TemporaryFile::TemporaryFile(std::shared_ptr<SystemCalls> systemCalls, const FileURL& folderLocation)
    : calls(std::move(systemCalls)), location(folderLocation), folder(*calls, location) {}

TemporaryFile::~TemporaryFile() { removeHidden(); }

std::optional<Error> TemporaryFile::create() {
  if (!folder.isOpen()) return failed("opening the folder");
  file = folder.isAppendOnly() ? OpenFile(*calls, folder.descriptor(), ".", O_WRONLY | O_TMPFILE, newFileMode)
                               : createHidden();
  if (!file->isOpen()) return failed("creating a temporary file");
  return std::nullopt;
}

OpenFile TemporaryFile::createHidden() {
  for (int attempts = 1;; ++attempts) {
    auto name = randomName();
    OpenFile created(*calls, folder.descriptor(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL, newFileMode);
    if (created.isOpen()) hidden = std::move(name);
    if (created.isOpen() || errno != EEXIST || attempts == 100) return created;
  }
}

std::optional<Error> TemporaryFile::write(std::string_view data, Flush flush) {
  // The disk is at work on the beginning of a large file while the rest is copied.
  for (auto rest = data; !rest.empty(); rest.remove_prefix(std::min(rest.size(), pieceSize))) {
    if (!file->writeAll(rest.substr(0, pieceSize))) return failed("writing the data");
    if (flush == Flush::toDisk && rest.size() > pieceSize) calls->beginFlush(file->descriptor());
  }
  if (flush == Flush::toDisk && !file->flush()) return failed("flushing the data to the disk");
  if (!hidden.empty() && !file->close()) return failed("closing the file");
  return std::nullopt;
}

std::optional<Error> TemporaryFile::publish(std::string_view name) {
  const std::string target(name);
  int code = FileURL::isPathComponent(name) ? giveName(target.c_str()) : EINVAL;
  if (code == EEXIST && folder.isLinkWithoutTarget(target.c_str())) code = replaceLink(target.c_str());
  if (code == 0) return std::nullopt;
  return fileError(FileOperation::write, location.appendingPath(target), "moving the new file into place",
                   code);
}

std::optional<Error> TemporaryFile::takeRightsOf(const std::string& name) {
  const auto target = folder.entry(name.c_str());
  if (!target) return failed("asking for the rights of the file");
  constexpr mode_t permissions = 07777;
  calls->changeOwner(file->descriptor(), target->st_uid, target->st_gid);
  if (calls->changeMode(file->descriptor(), target->st_mode & permissions) == 0) return std::nullopt;
  return failed("giving the new file the rights of the old one");
}

std::optional<Error> TemporaryFile::replace(const std::string& name, const FileVersion& expected) {
  const int code = hidden.empty() ? EPERM : takePlace(name.c_str(), expected);
  if (code == 0) return std::nullopt;
  return fileError(FileOperation::write, location.appendingPath(name), "moving the new file into place",
                   code);
}

/// 0, or the reason. The files change places, so that what comes out can be looked at in peace.
int TemporaryFile::takePlace(const char* target, const FileVersion& expected) {
  if (!isInVersion(target, expected)) return ESTALE;
  const auto own = folder.entry(hidden.c_str());
  if (!own) return errno;
  if (exchange(target) == 0) {
    if (!isInVersion(hidden.c_str(), expected)) {
      putBack(target, *own);
      return ESTALE;
    }
    removeHidden();
    return 0;
  }
  if (!meansNoSuchRename(errno)) return errno == ENOENT ? ESTALE : errno;
  if (retrying([&] { return calls->renameAt(folder.descriptor(), hidden.c_str(), target, 0); }) == -1) {
    return errno;
  }
  hidden.clear();
  return 0;
}

bool TemporaryFile::isInVersion(const char* name, const FileVersion& expected) const {
  const auto found = folder.entry(name);
  return found && S_ISREG(found->st_mode) && versionOf(*found) == expected;
}

/// 0, or the reason; `EEXIST` when another name is to be chosen.
int TemporaryFile::giveName(const char* target) {
  if (file->isOpen()) return linkUnnamed(target);
  if (way == Way::link) {
    // To who watches the folder it is a new file. Thunar 4.20 misses one that is renamed as soon as it is
    // there.
    const int code = linkHidden(target);
    if (!meansNoLinks(code)) return code;
    way = Way::rename;
  }
  if (way == Way::rename) {
    const int renamed = retrying(
        [&] { return calls->renameAt(folder.descriptor(), hidden.c_str(), target, RENAME_NOREPLACE); });
    if (renamed == 0) hidden.clear();
    if (renamed == 0 || !meansNoSuchRename(errno)) return renamed == 0 ? 0 : errno;
    lockFolder();
  }
  return giveNameWhileLocked(target);
}

int TemporaryFile::linkUnnamed(const char* target) {
  const auto path = "/proc/self/fd/" + std::to_string(file->descriptor());
  const auto link = [&] {
    return calls->linkAt(folder.descriptor(), path.c_str(), target, AT_SYMLINK_FOLLOW);
  };
  if (retrying(link) == -1) return errno;
  file->close();
  return 0;
}

int TemporaryFile::linkHidden(const char* target) {
  if (retrying([&] { return calls->linkAt(folder.descriptor(), hidden.c_str(), target, 0); }) == -1) {
    const int code = errno;
    // A server that did it may be asked once more, because its answer was lost.
    const auto own = folder.entry(hidden.c_str());
    const auto there = folder.entry(target);
    if (code != EEXIST || !own || !there || !isSameFile(*own, *there)) return code;
  }
  removeHidden();
  return 0;
}

int TemporaryFile::giveNameWhileLocked(const char* target) {
  if (folder.entry(target) && !folder.isLinkWithoutTarget(target)) return EEXIST;
  if (retrying([&] { return calls->renameAt(folder.descriptor(), hidden.c_str(), target, 0); }) == -1) {
    return errno;
  }
  hidden.clear();
  return 0;
}

/// Takes the place of a link without a target. What came to that place meanwhile is put back, and the answer
/// is `EEXIST`.
int TemporaryFile::replaceLink(const char* target) {
  if (hidden.empty()) return ELOOP;
  const auto own = folder.entry(hidden.c_str());
  if (!own) return errno;
  if (exchange(target) == -1) {
    const int code = errno;
    if (!meansNoSuchRename(code)) return code == ENOENT ? EEXIST : code;
    lockFolder();
    return giveNameWhileLocked(target);
  }
  if (folder.isLinkWithoutTarget(hidden.c_str())) {
    removeHidden();
    return 0;
  }
  putBack(target, *own);
  return EEXIST;
}

int TemporaryFile::exchange(const char* target) {
  return retrying(
      [&] { return calls->renameAt(folder.descriptor(), hidden.c_str(), target, RENAME_EXCHANGE); });
}

void TemporaryFile::putBack(const char* target, const struct stat& own) {
  for (int attempts = 0; attempts < 3; ++attempts) {
    if (exchange(target) == 0) break;
    // Our own file may have been removed under the other's name.
    if (errno == ENOENT &&
        calls->renameAt(folder.descriptor(), hidden.c_str(), target, RENAME_NOREPLACE) == 0) {
      break;
    }
  }
  const auto left = folder.entry(hidden.c_str());
  if (!left || !isSameFile(*left, own)) hidden.clear();  // what isn't ours is not ours to remove
}

/// Keeps others who publish like this waiting while this one finds out whether the name is free, and takes
/// it.
void TemporaryFile::lockFolder() {
  way = Way::lock;
  lock.emplace(*calls, folder.descriptor(), ".", O_RDONLY | O_DIRECTORY);
  const auto end = std::chrono::steady_clock::now() + lockPatience;
  while (lock->isOpen() && calls->lock(lock->descriptor()) == -1 &&
         (errno == EWOULDBLOCK || errno == EINTR) && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

void TemporaryFile::removeHidden() {
  if (hidden.empty()) return;
  const int removed = retrying([&] { return calls->unlinkAt(folder.descriptor(), hidden.c_str()); });
  if (removed == 0) hidden.clear();
}

Error TemporaryFile::failed(std::string_view step) const {
  return fileError(FileOperation::createIn, location, step, errno);
}

}  // namespace sprig::ports
