// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileURL.h"

#include <utility>
#include <vector>

namespace sprig::platform {

FileURL::FileURL(std::string path) : absolutePath(std::move(path)) {
  while (absolutePath.size() > 1 && absolutePath.back() == '/') absolutePath.pop_back();
}

std::string FileURL::lastPathComponent() const {
  if (absolutePath == "/") return absolutePath;
  return absolutePath.substr(absolutePath.rfind('/') + 1);
}

FileURL FileURL::deletingLastPathComponent() const {
  const auto slash = absolutePath.rfind('/');
  return FileURL(slash == 0 || slash == std::string::npos ? "/" : absolutePath.substr(0, slash));
}

std::optional<FileURL> FileURL::appendingPathComponent(std::string_view name) const {
  if (!isPathComponent(name)) return std::nullopt;
  return appendingPath(name);
}

FileURL FileURL::appendingPath(std::string_view relativePath) const {
  std::string joined = absolutePath;
  if (joined.back() != '/') joined += '/';
  joined += relativePath;
  return FileURL(std::move(joined));
}

FileURL FileURL::standardized() const {
  std::vector<std::string_view> segments;
  const std::string_view path = absolutePath;
  for (std::size_t begin = 0; begin < path.size();) {
    const auto end = std::min(path.find('/', begin), path.size());
    const auto segment = path.substr(begin, end - begin);
    if (segment == "..") {
      if (!segments.empty()) segments.pop_back();
    } else if (!segment.empty() && segment != ".") {
      segments.push_back(segment);
    }
    begin = end + 1;
  }
  std::string result;
  for (const auto segment : segments) result.append("/").append(segment);
  return FileURL(result.empty() ? "/" : std::move(result));
}

bool FileURL::isPathComponent(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

}  // namespace sprig::platform
