// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <pwd.h>

#include <mutex>
#include <optional>
#include <string>

#include "platform/UserDatabase.h"

namespace sprig::ports {

/// The user database as the C library sees it (files, LDAP, systemd-homed, ...). What it has said of a user
/// stays the answer: nobody's home moves while they are logged in, and each log line wants to know it.
class LinuxUserDatabase final : public platform::UserDatabase {
 public:
  struct Entry {
    platform::FileURL home;
    std::string loginName;
    std::string fullName;
  };

  /// The entry of the process's real user; nothing without one.
  std::optional<Entry> entry() const;

  /// What a record of the database says; nothing when it names no absolute home folder. The full name is the
  /// first field of the comment, or the login name.
  static std::optional<Entry> entry(const passwd& record);

  std::optional<platform::FileURL> homeDirectory() const override;
  std::string fullUserName() const override;

 private:
  static std::optional<Entry> entryOf(uid_t user);

  mutable std::mutex lock;
  // Guarded by lock.
  mutable std::optional<Entry> known;
  mutable uid_t knownUser = 0;
};

}  // namespace sprig::ports
