// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/OpenFile.h"

#include <cerrno>

namespace sprig::ports {

bool OpenFile::writeAll(std::string_view data) {
  while (!data.empty()) {
    const ssize_t written = retrying([&] { return calls->write(number, data.data(), data.size()); });
    if (written == -1) return false;
    if (written == 0) {
      errno = EIO;
      return false;
    }
    data.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool OpenFile::flush() {
  return retrying([&] { return calls->flush(number); }) != -1;
}

}  // namespace sprig::ports
