// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Error.h"
#include "platform/FileSystem.h"
#include "platform/FileURL.h"
#include "ports/linux/OpenFile.h"
#include "ports/linux/OpenFolder.h"
#include "ports/linux/SystemCalls.h"

namespace sprig::ports {

/// A new file, first below a hidden name that nobody else has. In an append-only folder, where that name
/// could never be taken away, the file has none at all until it is published.
///
/// Threads:   one at a time.
/// Ownership: every descriptor is closed with this value, and the file removed unless it was published.
/// Failure:   an `Error`.
class TemporaryFile final : public platform::UnpublishedFile {
 public:
  enum class Flush { no, toDisk };

  TemporaryFile(std::shared_ptr<SystemCalls> systemCalls, const platform::FileURL& folderLocation);
  ~TemporaryFile() override;
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Makes the empty file; before all else.
  std::optional<platform::Error> create();

  /// Writes its whole content; once.
  std::optional<platform::Error> write(std::string_view data, Flush flush);

  std::optional<platform::Error> publish(std::string_view name) override;

  /// Gives the still empty file the mode of an existing one, and its owner where that is allowed.
  std::optional<platform::Error> takeRightsOf(const std::string& name);

  /// Takes the place of a regular file, once only; `ESTALE` if that one is in another version.
  std::optional<platform::Error> replace(const std::string& name, const platform::FileVersion& expected);

 private:
  /// By which means the name is given, the next one where the file system doesn't have the one before.
  enum class Way { link, rename, lock };

  OpenFile createHidden();
  int takePlace(const char* target, const platform::FileVersion& expected);
  bool isInVersion(const char* name, const platform::FileVersion& expected) const;
  int giveName(const char* target);
  int giveNameWhileLocked(const char* target);
  int linkUnnamed(const char* target);
  int linkHidden(const char* target);
  int replaceLink(const char* target);
  int exchange(const char* target);
  void putBack(const char* target, const struct stat& own);
  void lockFolder();
  void removeHidden();
  platform::Error failed(std::string_view step) const;

  std::shared_ptr<SystemCalls> calls;
  const platform::FileURL location;
  OpenFolder folder;
  std::optional<OpenFile> file;  // open until it is written, one without a name for longer
  std::string hidden;            // its name; empty when it has none, or none any more
  Way way = Way::link;
  std::optional<OpenFile> lock;
};

}  // namespace sprig::ports
