// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/FileURL.h"
#include "platform/Volumes.h"

namespace sprig::ports {

/// One line of a mount table, unescaped.
struct MountEntry {
  std::string device;
  std::string folder;
  std::string type;
  std::string options;
};

/// What decides which mounts a user would call a volume.
struct VolumeRules {
  /// File systems without a device beneath them, as `/proc/filesystems` names them.
  std::set<std::string, std::less<>> deviceless;
  /// Whose media under `/run/media` count.
  std::string loginName;
  /// Folders that the administrator has hidden from file managers.
  std::set<std::string, std::less<>> hiddenFolders;
};

/// The folders of the mounts that a user would see as volumes, each once, in the table's order: disks and
/// network shares outside the folders of the system, not hidden ones, nor images that programs mount for
/// themselves.
std::vector<platform::FileURL> visibleVolumes(const std::vector<MountEntry>& mounts,
                                              const VolumeRules& rules);

/// The volumes in the process's mount table. No mounted file system is touched, so a dead network share
/// delays nothing.
class MountedVolumes final : public platform::Volumes {
 public:
  std::optional<std::vector<platform::FileURL>> mountedVolumeURLs() const override;
};

}  // namespace sprig::ports
