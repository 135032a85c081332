// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cerrno>

namespace sprig::ports {

/// The result of a system call that is made again for as long as signals interrupt it.
template <typename Call>
auto retrying(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

}  // namespace sprig::ports
