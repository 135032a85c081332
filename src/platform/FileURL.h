// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace sprig::platform {

/// The location of a file or folder: an absolute path, never a bare string.
///
/// Paths are bytes: any byte but NUL may occur, and a component may hold any byte but "/" and NUL.
/// Nothing here touches the file system.
///
/// Threads: a plain value.
class FileURL {
 public:
  /// Requires: `path` is absolute. Trailing slashes are dropped, so a folder has one spelling.
  explicit FileURL(std::string path);

  const std::string& path() const { return absolutePath; }

  /// The name of what is located; "/" for the top of the file system.
  std::string lastPathComponent() const;

  /// The folder that holds what is located; the top of the file system is its own parent.
  FileURL deletingLastPathComponent() const;

  /// The entry called `name` in this folder; nothing when `name` is not one path component
  /// (see `isPathComponent`), so a name can never lead out of its folder.
  std::optional<FileURL> appendingPathComponent(std::string_view name) const;

  /// This location followed by a relative path of one or more components.
  FileURL appendingPath(std::string_view relativePath) const;

  /// The same location without "." and ".." segments; links are not resolved.
  FileURL standardized() const;

  /// Whether `name` can name an entry of a folder: not empty, not "." or "..", no "/" and no NUL.
  static bool isPathComponent(std::string_view name);

  friend auto operator<=>(const FileURL&, const FileURL&) = default;

 private:
  std::string absolutePath;
};

}  // namespace sprig::platform
