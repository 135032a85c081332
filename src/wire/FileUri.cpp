// SPDX-License-Identifier: GPL-3.0-or-later

#include "wire/FileUri.h"

#include <climits>

#include "wire/Pointers.h"

namespace sprig::wire {

namespace {

/// A local file has no query: "?" is a part of its name, which newer releases of GLib leave out.
std::string withoutQuery(std::string_view uri) {
  std::string result(uri);
  for (auto mark = result.find('?'); mark != std::string::npos; mark = result.find('?', mark)) {
    result.replace(mark, 1, "%3F");
  }
  return result;
}

}  // namespace

std::optional<std::string> pathFromUri(std::string_view uri) {
  constexpr std::string_view localFile = "file:///";
  if (uri.substr(0, localFile.size()) != localFile) return std::nullopt;
  if (uri.find('\0') != std::string_view::npos || uri.find('#') != std::string_view::npos)
    return std::nullopt;
  const TextPointer path(g_filename_from_uri(withoutQuery(uri).c_str(), nullptr, nullptr));
  if (!path || *path != '/') return std::nullopt;
  std::string result(path.get());
  if (result.size() >= PATH_MAX) return std::nullopt;
  return result;
}

bool isInFolder(std::string_view path, std::string_view folder) {
  while (folder.ends_with('/')) folder.remove_suffix(1);
  if (path.find("/../") != std::string_view::npos || path.ends_with("/..")) return false;
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::optional<std::string> uriFromPath(std::string_view path) {
  if (path.find('\0') != std::string_view::npos) return std::nullopt;
  const TextPointer uri(g_filename_to_uri(std::string(path).c_str(), nullptr, nullptr));
  if (!uri) return std::nullopt;
  return std::string(uri.get());
}

}  // namespace sprig::wire
