#include "filemanagers/client/ServedFolders.h"

#include <algorithm>

#include "wire/FileUri.h"

namespace sprig::filemanagers {

namespace {

void dropSlashesAtEnd(std::string& path) {
  while (path.ends_with('/')) path.pop_back();
}

}  // namespace

ServedFolders::ServedFolders(const std::vector<std::string>& uris) {
  for (const auto& uri : uris) {
    auto path = wire::pathFromUri(uri);
    if (!path) continue;
    dropSlashesAtEnd(*path);
    paths.push_back(std::move(*path));
  }
}

bool ServedFolders::contain(std::string_view uri) const {
  auto path = wire::pathFromUri(uri);
  if (!path) return false;
  dropSlashesAtEnd(*path);
  return std::any_of(paths.begin(), paths.end(), [&](const std::string& folder) {
    return path->starts_with(folder) && (path->size() == folder.size() || (*path)[folder.size()] == '/');
  });
}

}  // namespace sprig::filemanagers
