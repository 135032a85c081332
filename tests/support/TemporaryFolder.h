// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/FileURL.h"

namespace sprig::test {

/// A new, empty folder that is removed, with all it holds, when this goes. Made for the user alone.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const platform::FileURL& url() const { return location; }

  /// The entry at a relative path, whether or not it exists.
  platform::FileURL operator/(std::string_view relativePath) const {
    return location.appendingPath(relativePath);
  }

 private:
  platform::FileURL location;
};

/// Writes or replaces a file in place; throws when it can't.
void writeFile(const platform::FileURL& file, std::string_view content);
/// The content of a file, links followed; "(none)" when there is no such file.
std::string readFile(const platform::FileURL& file);
/// The names in a folder, sorted, hidden ones included.
std::vector<std::string> namesIn(const platform::FileURL& folder);

}  // namespace sprig::test
