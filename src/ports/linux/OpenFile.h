// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <fcntl.h>

#include <string_view>
#include <utility>

#include "ports/linux/SystemCalls.h"
#include "ports/linux/retrying.h"

namespace sprig::ports {

/// A descriptor opened through the system-call seam and closed through it with this value.
class OpenFile {
 public:
  /// Opens `path` below `folder` (a descriptor, or `AT_FDCWD`); check `isOpen`, the reason is in `errno`.
  OpenFile(SystemCalls& systemCalls, int folder, const char* path, int flags, mode_t mode = 0)
      : calls(&systemCalls),
        number(retrying([&] { return calls->openAt(folder, path, flags | O_CLOEXEC, mode); })) {}
  OpenFile(OpenFile&& other) noexcept : calls(other.calls), number(std::exchange(other.number, -1)) {}
  OpenFile& operator=(OpenFile&& other) noexcept {
    std::swap(calls, other.calls);
    std::swap(number, other.number);
    return *this;
  }
  ~OpenFile() { close(); }

  bool isOpen() const { return number >= 0; }
  int descriptor() const { return number; }

  /// Writes all of `data`; false with `errno` when only a part or nothing could be written.
  bool writeAll(std::string_view data);

  /// Puts on the disk what was written; false with `errno` on failure.
  bool flush();

  /// Closes now; false when the system reports that data was lost. An interrupted close has closed all the
  /// same.
  bool close() { return !isOpen() || calls->close(std::exchange(number, -1)) == 0 || errno == EINTR; }

 private:
  SystemCalls* calls;
  int number;
};

}  // namespace sprig::ports
