// SPDX-License-Identifier: GPL-3.0-or-later

#include "contract/Worlds.h"
#include "ports/linux/InotifyFileChangeSources.h"
#include "ports/linux/LinuxFileSystem.h"

namespace sprig::test {

std::unique_ptr<platform::FileSystem> makeFileSystem() { return std::make_unique<ports::LinuxFileSystem>(); }

std::unique_ptr<platform::FileChangeSources> makeFileChangeSources() {
  return std::make_unique<ports::InotifyFileChangeSources>();
}

}  // namespace sprig::test
