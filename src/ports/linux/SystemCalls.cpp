// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/SystemCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdio>

namespace sprig::ports {

int SystemCalls::openAt(int folder, const char* path, int flags, mode_t mode) {
  return ::openat(folder, path, flags, mode);
}

ssize_t SystemCalls::read(int descriptor, void* buffer, std::size_t size) {
  return ::read(descriptor, buffer, size);
}

ssize_t SystemCalls::write(int descriptor, const void* data, std::size_t size) {
  return ::write(descriptor, data, size);
}

int SystemCalls::status(int descriptor, struct stat& result) { return ::fstat(descriptor, &result); }

int SystemCalls::changeOwner(int descriptor, uid_t owner, gid_t group) {
  return ::fchown(descriptor, owner, group);
}

int SystemCalls::changeMode(int descriptor, mode_t mode) { return ::fchmod(descriptor, mode); }

void SystemCalls::beginFlush(int descriptor) { ::sync_file_range(descriptor, 0, 0, SYNC_FILE_RANGE_WRITE); }

int SystemCalls::flush(int descriptor) { return ::fsync(descriptor); }

int SystemCalls::close(int descriptor) { return ::close(descriptor); }

int SystemCalls::attributes(int descriptor, std::uint64_t& result) {
  struct statx status = {};
  const int outcome = ::statx(descriptor, "", AT_EMPTY_PATH, 0, &status);
  if (outcome == 0) result = status.stx_attributes;
  return outcome;
}

int SystemCalls::statusAt(int folder, const char* name, struct stat& result, int flags) {
  return ::fstatat(folder, name, &result, flags);
}

int SystemCalls::renameAt(int folder, const char* from, const char* to, unsigned flags) {
  return ::renameat2(folder, from, folder, to, flags);
}

int SystemCalls::linkAt(int folder, const char* from, const char* to, int flags) {
  return ::linkat(folder, from, folder, to, flags);
}

int SystemCalls::lock(int descriptor) { return ::flock(descriptor, LOCK_EX | LOCK_NB); }

int SystemCalls::unlinkAt(int folder, const char* name) { return ::unlinkat(folder, name, 0); }

}  // namespace sprig::ports
