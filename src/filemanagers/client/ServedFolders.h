// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sprig::filemanagers {

/// The folders in which Sprig offers its menu.
class ServedFolders {
 public:
  /// Leaves out what is not the URI of a local folder.
  explicit ServedFolders(const std::vector<std::string>& uris);

  /// Whether a URI is that of a local file or folder in one of them, or one of them itself. Judged by the
  /// names alone, without a look at the file system.
  bool contain(std::string_view uri) const;

  bool operator==(const ServedFolders&) const = default;

 private:
  std::vector<std::string> paths;
};

}  // namespace sprig::filemanagers
