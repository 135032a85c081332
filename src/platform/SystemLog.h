// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

namespace sprig::platform {

/// The system's log, where administrators look.
///
/// Threads: any. Failure: a line that can't be written is lost silently.
class SystemLog {
 public:
  virtual ~SystemLog() = default;

  /// Writes one line as it is; the system adds its own time and process.
  virtual void log(std::string_view line) = 0;
};

}  // namespace sprig::platform
