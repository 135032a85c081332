// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

#include "platform/SystemLog.h"
#include "ports/linux/Descriptor.h"

namespace sprig::ports {

/// Where lines go that the system log doesn't take.
enum class SystemLogFallback { standardError, none };

/// The journal or syslog, whichever listens at `/dev/log`.
///
/// The datagrams are written here rather than by syslog(3), which waits for a log daemon that has stopped
/// reading; this never waits for it. Each is sent to the path anew, so a restarted daemon is found again.
class LinuxSystemLog final : public platform::SystemLog {
 public:
  /// `identifier` is the program's name in the log.
  LinuxSystemLog(std::string identifier, SystemLogFallback fallback, std::string socketPath = "/dev/log");

  void log(std::string_view line) override;

 private:
  bool sendToDaemon(std::string_view line) const;

  const std::string name;
  const SystemLogFallback fallbackWay;
  const std::string path;
  const Descriptor socket;
};

}  // namespace sprig::ports
