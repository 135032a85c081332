// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"
#include "ports/linux/LinuxProcessInfo.h"
#include "ports/linux/LinuxUserDatabase.h"
#include "ports/linux/SystemCalls.h"

namespace sprig::ports {

/// The files of a Linux system, and the user's folders as the XDG base directories lay them out.
///
/// `homeDirectory` is `$HOME`, else the user database's home, else the top of the file system. This program's
/// own home is `$XDG_DATA_HOME/sprig`, its state `$XDG_STATE_HOME/sprig`, a container
/// `$XDG_CONFIG_HOME/<identifier>`, whether or not they exist. The folder for templates is that of
/// xdg-user-dirs. Regular files of more than 1 GiB are not read
/// (`EFBIG`): nothing the product reads is that large, and the memory would be the desktop's.
class LinuxFileSystem : public platform::FileSystem {
 public:
  explicit LinuxFileSystem(std::shared_ptr<SystemCalls> systemCalls = std::make_shared<SystemCalls>());

  platform::EntryKind entryKind(const platform::FileURL& location) const override;
  std::unique_ptr<platform::Folder> openFolder(const platform::FileURL& location) const override;
  std::optional<std::vector<std::string>> contentsOfDirectory(
      const platform::FileURL& location) const override;
  std::optional<platform::Error> createDirectory(const platform::FileURL& location) override;
  tl::expected<std::string, platform::Error> contentsOfFile(const platform::FileURL& location) const override;
  tl::expected<std::unique_ptr<platform::UnpublishedFile>, platform::Error> prepareFile(
      std::string_view data, const platform::FileURL& folder) override;
  std::optional<platform::Error> createFile(std::string_view data,
                                            const platform::FileURL& location) override;
  std::optional<platform::Error> replaceFile(std::string_view data, const platform::FileURL& location,
                                             const platform::FileVersion& expected) override;
  bool isWritable(const platform::FileURL& location) const override;
  std::optional<platform::Error> removeFile(const platform::FileURL& location) override;
  std::unique_ptr<platform::FileLock> lockFile(const platform::FileURL& location) override;
  std::optional<platform::Error> appendData(std::string_view data,
                                            const platform::FileURL& location) override;
  platform::FileURL resolvingSymlinks(const platform::FileURL& location) const override;
  std::optional<platform::FileVersion> fileVersion(const platform::FileURL& location) const override;
  std::vector<platform::FileURL> foldersLeadingTo(const platform::FileURL& location) const override;
  platform::FileURL homeDirectory() const override;
  platform::FileURL homeDirectoryForCurrentUser() const override;
  platform::FileURL stateDirectory() const override;
  std::optional<platform::FileURL> templatesDirectory() const override;
  std::optional<platform::FileURL> containerURL(std::string_view applicationGroupIdentifier) const override;

 private:
  platform::FileURL baseDirectory(std::string_view variable, std::string_view defaultBelowHome) const;

  LinuxProcessInfo process;
  LinuxUserDatabase users;
  std::shared_ptr<SystemCalls> calls;
};

}  // namespace sprig::ports
