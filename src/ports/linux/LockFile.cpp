// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/LockFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

#include "ports/linux/retrying.h"

namespace sprig::ports {

namespace {

constexpr mode_t privateFile = 0600;
constexpr mode_t privateFolder = 0700;

/// Locks without waiting for longer than a user would notice.
bool lock(int descriptor) {
  constexpr auto pause = std::chrono::milliseconds(5);
  constexpr int maxAttempts = 100;
  for (int attempts = 1; ::flock(descriptor, LOCK_EX | LOCK_NB) == -1; ++attempts) {
    if (attempts == maxAttempts) return false;
    std::this_thread::sleep_for(pause);
  }
  return true;
}

}  // namespace

LockFile::LockFile(const platform::FileURL& location) {
  const auto folder = location.deletingLastPathComponent();
  std::error_code ignored;
  std::filesystem::create_directories(folder.deletingLastPathComponent().path(), ignored);
  ::mkdir(folder.path().c_str(), privateFolder);
  Descriptor opened(retrying([&] {
    return ::open(location.path().c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                  privateFile);
  }));
  if (opened.isOpen() && lock(opened.get())) file = std::move(opened);
}

}  // namespace sprig::ports
