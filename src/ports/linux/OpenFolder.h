// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/stat.h>

#include <optional>

#include "platform/FileSystem.h"
#include "platform/FileURL.h"
#include "ports/linux/OpenFile.h"
#include "ports/linux/SystemCalls.h"

namespace sprig::ports {

/// A folder held open while a file is put into it, so that it is the same one throughout, even when somebody
/// renames it, and no path gets longer than the file's own.
class OpenFolder {
 public:
  /// Check `isOpen`, the reason is in `errno`.
  OpenFolder(SystemCalls& systemCalls, const platform::FileURL& location);

  bool isOpen() const { return folder.isOpen(); }
  int descriptor() const { return folder.descriptor(); }

  /// Whether entries can be made in it but neither renamed nor removed; so it is when that can't be found
  /// out.
  bool isAppendOnly() const;

  /// What has that name, a link itself rather than its target; nothing, with the reason in `errno`.
  std::optional<struct stat> entry(const char* name) const;

  /// Whether the name is a link that leads nowhere.
  bool isLinkWithoutTarget(const char* name) const;

 private:
  SystemCalls& calls;
  OpenFile folder;
};

platform::FileVersion versionOf(const struct stat& found);

/// Whether both are of one file.
bool isSameFile(const struct stat& left, const struct stat& right);

}  // namespace sprig::ports
