#pragma once

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>

#include "ports/linux/SystemCalls.h"

namespace sprig::test {

/// Real calls, of which the n-th fails with an errno, and all of which may move only a few bytes at a time.
///
/// Threads: any, but what fails is said while nobody else makes calls.
class FaultyCalls final : public ports::SystemCalls {
 public:
  int failing = 0;  // counted from 1; 0: none
  int code = 0;
  std::size_t mostBytes = SIZE_MAX;
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
    return fails() ? -1 : SystemCalls::read(descriptor, buffer, std::min(size, mostBytes));
  }
  ssize_t write(int descriptor, const void* data, std::size_t size) override {
    return fails() ? -1 : SystemCalls::write(descriptor, data, std::min(size, mostBytes));
  }
  int status(int descriptor, struct stat& result) override {
    return fails() ? -1 : SystemCalls::status(descriptor, result);
  }
  int flush(int descriptor) override { return fails() ? -1 : SystemCalls::flush(descriptor); }
  int close(int descriptor) override {
    // A failing close closes.
    const int result = SystemCalls::close(descriptor);
    return fails() ? -1 : result;
  }
  int renameAt(int folder, const char* from, const char* to) override {
    return fails() ? -1 : SystemCalls::renameAt(folder, from, to);
  }
  int unlinkAt(int folder, const char* name) override {
    return fails() ? -1 : SystemCalls::unlinkAt(folder, name);
  }

 private:
  bool fails() {
    if (++made != failing) return false;
    errno = code;
    return true;
  }
};

}  // namespace sprig::test
