// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "ports/linux/retrying.h"

namespace sprig::terminal {

void openMissingStandardStreams() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // The lowest free descriptor is the missing one.
    if (::fcntl(descriptor, F_GETFD) == -1) static_cast<void>(::open("/dev/null", O_RDONLY));
  }
}

bool writeFully(int descriptor, std::string_view data) {
  while (!data.empty()) {
    const auto written = ports::retrying([&] { return ::write(descriptor, data.data(), data.size()); });
    if (written <= 0) return false;
    data.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string lastErrorText() { return std::generic_category().message(errno); }

}  // namespace sprig::terminal
