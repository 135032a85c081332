// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "platform/FileURL.h"

namespace sprig::platform {

/// What the system has on record about the user, whatever the environment says.
///
/// Threads: any. Failure: no entry (or one without a home folder) is nothing, never an error.
class UserDatabase {
 public:
  virtual ~UserDatabase() = default;

  /// The home folder in the entry of the process's real user; nothing when there is no entry, or no home
  /// folder in it.
  virtual std::optional<FileURL> homeDirectory() const = 0;

  /// The person's full name; the login name when none is recorded; empty without an entry with a home folder.
  virtual std::string fullUserName() const = 0;
};

}  // namespace sprig::platform
