// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace sprig::platform {

struct OperatingSystemVersion {
  int major = 0;
  int minor = 0;
  int patch = 0;
  friend auto operator<=>(const OperatingSystemVersion&, const OperatingSystemVersion&) = default;
};

/// The process and what it runs on.
///
/// Threads: any, as long as none changes the environment. Failure: none.
class ProcessInfo {
 public:
  virtual ~ProcessInfo() = default;

  /// The value of an environment variable, possibly empty; nothing when it is not set.
  virtual std::optional<std::string> environment(std::string_view variable) const = 0;

  /// Version of the desktop interface that the port provides. From 14.0.0 on, programs are activated
  /// cooperatively (`Application::activate`).
  virtual OperatingSystemVersion operatingSystemVersion() const = 0;
};

}  // namespace sprig::platform
