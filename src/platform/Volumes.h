// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <vector>

#include "platform/FileURL.h"

namespace sprig::platform {

/// The mounted volumes a user would see.
///
/// Threads: any. Failure: nothing in place of the list.
class Volumes {
 public:
  virtual ~Volumes() = default;

  /// Where they are mounted, hidden ones left out; nothing when the list can't be had.
  virtual std::optional<std::vector<FileURL>> mountedVolumeURLs() const = 0;
};

}  // namespace sprig::platform
