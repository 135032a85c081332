// SPDX-License-Identifier: GPL-3.0-or-later

#include "finder/ServedFolders.h"

#include <vector>

#include "platform/Platform.h"

namespace sprig {

using platform::FileURL;

namespace {

/// The startup disk, and the folder that volumes are mounted in, are not volumes to serve.
bool isServed(const FileURL& volume) {
  return volume.path() != "/" && volume.path() != "/Volumes" &&
         platform::current().files.resolvingSymlinks(volume).path() != "/";
}

}  // namespace

std::set<FileURL> servedFolders(const std::set<FileURL>& known) {
  const auto& platform = platform::current();
  const auto home = platform.users.homeDirectory();
  std::set<FileURL> folders{home ? *home : platform.files.homeDirectoryForCurrentUser()};
  const auto volumes = platform.volumes.mountedVolumeURLs();
  if (!volumes) folders.insert(known.begin(), known.end());
  for (const auto& volume : volumes.value_or(std::vector<FileURL>{})) {
    if (known.contains(volume) || isServed(volume)) folders.insert(volume);
  }
  return folders;
}

}  // namespace sprig
