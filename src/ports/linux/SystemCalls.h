// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>

namespace sprig::ports {

/// The system calls by which files are read, written and named, each as its manual page says (-1 and `errno`
/// on failure). Virtual so that a test can make any of them fail.
///
/// Threads: any.
class SystemCalls {
 public:
  virtual ~SystemCalls() = default;

  virtual int openAt(int folder, const char* path, int flags, mode_t mode);
  virtual ssize_t read(int descriptor, void* buffer, std::size_t size);
  virtual ssize_t write(int descriptor, const void* data, std::size_t size);
  virtual int status(int descriptor, struct stat& result);
  virtual int changeOwner(int descriptor, uid_t owner, gid_t group);
  virtual int changeMode(int descriptor, mode_t mode);
  /// Has what was written begin to go to the disk, where that is possible; without waiting for it.
  virtual void beginFlush(int descriptor);
  virtual int flush(int descriptor);
  virtual int close(int descriptor);
  /// The attributes (`STATX_ATTR_…`) of what is open.
  virtual int attributes(int descriptor, std::uint64_t& result);
  /// `flags` as fstatat takes them.
  virtual int statusAt(int folder, const char* name, struct stat& result, int flags);
  /// `flags` as renameat2 takes them.
  virtual int renameAt(int folder, const char* from, const char* to, unsigned flags);
  /// `from` is below `folder` unless it is an absolute path; `flags` as linkat takes them.
  virtual int linkAt(int folder, const char* from, const char* to, int flags);
  /// Takes the lock of flock(2) for this program alone, without waiting.
  virtual int lock(int descriptor);
  virtual int unlinkAt(int folder, const char* name);
};

}  // namespace sprig::ports
