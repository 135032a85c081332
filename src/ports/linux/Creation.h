// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>

#include "platform/FileURL.h"

namespace sprig::ports {

/// Which file it is and what its content is like. The device is left out: its number may be another after the
/// computer was started anew.
struct FileIdentity {
  std::uint64_t inode = 0;
  std::uint64_t size = 0;  // bytes
  std::int64_t modifiedSeconds = 0;
  std::int64_t modifiedNanoseconds = 0;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;

  /// Of the regular file there, a link not followed; nothing when there is none, or it can't be looked at.
  static std::optional<FileIdentity> of(const platform::FileURL& file);
};

/// What has become of a created file.
enum class CreationState { untouched, changed, replaced, gone };

/// A file that was created, and what it was like then.
///
/// Threads: a plain value; the operations may be called from any thread.
struct Creation {
  platform::FileURL file;
  FileIdentity identity;
  friend bool operator==(const Creation&, const Creation&) = default;

  /// The file as it is now; nothing when there is none.
  static std::optional<Creation> of(const platform::FileURL& file);

  CreationState state() const;

  /// Why the creation can't be taken back in a state other than untouched: a sentence without a full stop.
  std::string reasonToKeep(CreationState state) const;

  /// Removes the file if it is untouched. Failure: false, with the reason in `errno` if it is untouched.
  bool remove() const;
};

}  // namespace sprig::ports
