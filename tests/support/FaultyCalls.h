// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <fcntl.h>
#include <linux/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string_view>
#include <utility>

#include "ports/linux/SystemCalls.h"

namespace sprig::test {

/// Real calls, of which the n-th fails with an errno, and all of which may move only a few bytes at a time,
/// on a file system that may lack means.
///
/// Threads: any, but what fails is said while nobody else makes calls.
class FaultyCalls final : public ports::SystemCalls {
 public:
  int failing = 0;  // counted from 1; 0: none
  int code = 0;
  std::size_t maxBytes = SIZE_MAX;
  bool canRefuseToReplace = true;  // and exchange, when it renames
  bool canLink = true;
  bool isAppendOnly = false;  // every folder
  /// What somebody else does at the last moment before two files exchange their names; once.
  std::function<void()> meanwhile = [] {};
  std::atomic<int> made = 0;

  /// Counts anew; call `number` fails with `errorCode`.
  void failCall(int number, int errorCode) {
    made = 0;
    failing = number;
    code = errorCode;
  }

  int openAt(int folder, const char* path, int flags, mode_t mode) override {
    return fails() ? -1 : SystemCalls::openAt(folder, path, flags, mode);
  }
  ssize_t read(int descriptor, void* buffer, std::size_t size) override {
    return fails() ? -1 : SystemCalls::read(descriptor, buffer, std::min(size, maxBytes));
  }
  ssize_t write(int descriptor, const void* data, std::size_t size) override {
    return fails() ? -1 : SystemCalls::write(descriptor, data, std::min(size, maxBytes));
  }
  int status(int descriptor, struct stat& result) override {
    return fails() ? -1 : SystemCalls::status(descriptor, result);
  }
  int changeMode(int descriptor, mode_t mode) override {
    return fails() ? -1 : SystemCalls::changeMode(descriptor, mode);
  }
  int flush(int descriptor) override { return fails() ? -1 : SystemCalls::flush(descriptor); }
  int close(int descriptor) override {
    // A failing close closes.
    const int result = SystemCalls::close(descriptor);
    return fails() ? -1 : result;
  }
  int attributes(int descriptor, std::uint64_t& result) override {
    const int outcome = SystemCalls::attributes(descriptor, result);
    if (isAppendOnly) result |= STATX_ATTR_APPEND;
    return outcome;
  }
  int statusAt(int folder, const char* name, struct stat& result, int flags) override {
    return fails() ? -1 : SystemCalls::statusAt(folder, name, result, flags);
  }
  int renameAt(int folder, const char* from, const char* to, unsigned flags) override {
    if (flags == RENAME_EXCHANGE) std::exchange(meanwhile, [] {})();
    const bool refuses = lacks(isAppendOnly, EPERM) || lacks(flags != 0 && !canRefuseToReplace, EINVAL);
    return refuses || fails() ? -1 : SystemCalls::renameAt(folder, from, to, flags);
  }
  int linkAt(int folder, const char* from, const char* to, int flags) override {
    return lacks(!canLink, EPERM) || fails() ? -1 : SystemCalls::linkAt(folder, from, to, flags);
  }
  int lock(int descriptor) override { return fails() ? -1 : SystemCalls::lock(descriptor); }
  int unlinkAt(int folder, const char* name) override {
    return lacks(isAppendOnly, EPERM) || fails() ? -1 : SystemCalls::unlinkAt(folder, name);
  }

 private:
  static bool lacks(bool isLacking, int reason) {
    if (isLacking) errno = reason;
    return isLacking;
  }
  bool fails() {
    if (++made != failing) return false;
    errno = code;
    return true;
  }
};

}  // namespace sprig::test
