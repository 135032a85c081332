// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/handleFileSizeSignal.h"

#include <csignal>

namespace sprig::ports {

void handleFileSizeSignal() {
  struct sigaction action = {};
  // A handler, since a signal that is ignored stays so in programs that are started.
  action.sa_handler = [](int) {};
  action.sa_flags = SA_RESTART;
  ::sigaction(SIGXFSZ, &action, nullptr);
}

}  // namespace sprig::ports
