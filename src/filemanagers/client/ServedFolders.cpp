// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/ServedFolders.h"

#include <algorithm>

#include "wire/FileUri.h"

namespace sprig::filemanagers {

ServedFolders::ServedFolders(const std::vector<std::string>& uris) {
  for (const auto& uri : uris) {
    auto path = wire::pathFromUri(uri);
    if (path) paths.push_back(std::move(*path));
  }
}

bool ServedFolders::contain(std::string_view uri) const {
  const auto path = wire::pathFromUri(uri);
  return path && std::any_of(paths.begin(), paths.end(),
                             [&](const std::string& folder) { return wire::isInFolder(*path, folder); });
}

}  // namespace sprig::filemanagers
