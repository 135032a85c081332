// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileSystem.h"
#include "platform/FileURL.h"
#include "ports/linux/Descriptor.h"

namespace sprig::ports {

/// The lock of a file, by which programs of one user keep out of each other's way. The file is made, private,
/// with its folder.
///
/// Threads:   one at a time; each value has a lock of its own, in one program, too.
/// Ownership: the lock goes with this value, and with the program. The file stays.
/// Failure:   `isHeld` is false: it can't be made, or others have held it for half a second.
class LockFile final : public platform::FileLock {
 public:
  explicit LockFile(const platform::FileURL& location);

  bool isHeld() const { return file.isOpen(); }

 private:
  Descriptor file;
};

}  // namespace sprig::ports
