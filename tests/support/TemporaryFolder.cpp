// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace sprig::test {

using platform::FileURL;

namespace {

FileURL makeTemporaryFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "sprig-test-XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "mkdtemp " + pattern);
  }
  return FileURL(pattern);
}

}  // namespace

TemporaryFolder::TemporaryFolder() : location(makeTemporaryFolder()) {}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(location.path(), ignored);
}

void writeFile(const FileURL& file, std::string_view content) {
  std::ofstream stream;
  stream.exceptions(std::ios::failbit | std::ios::badbit);
  stream.open(file.path(), std::ios::binary | std::ios::trunc);
  stream << content << std::flush;
}

std::string readFile(const FileURL& file) {
  std::ifstream stream(file.path(), std::ios::binary);
  if (!stream) return "(none)";
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> namesIn(const FileURL& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace sprig::test
