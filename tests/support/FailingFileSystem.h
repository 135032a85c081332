#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"

namespace sprig::test {

/// A file system of which one operation fails without being carried out: with the given error where it
/// returns one, else with the answer that stands for failure (nothing there, nothing listed, the location
/// itself). Home folders can't fail and are not counted.
///
/// Threads:   any, but `failOperation` while nobody else uses it.
/// Ownership: the file system behind it is the caller's and outlives this.
class FailingFileSystem : public platform::FileSystem {
 public:
  explicit FailingFileSystem(platform::FileSystem& realFiles) : files(realFiles) {}

  /// Starts to count anew; operation `number`, counted from 1, fails. 0: none does.
  void failOperation(std::size_t number,
                     platform::Error error = {platform::POSIXErrorDomain, 5, "Injected failure"});
  /// Operations since the count started.
  std::size_t operations() const { return count; }
  /// Whether the failure has happened.
  bool tripped() const { return failing != 0 && count >= failing; }

  platform::EntryKind entryKind(const platform::FileURL& location) const override;
  std::unique_ptr<platform::Folder> openFolder(const platform::FileURL& location) const override;
  std::optional<std::vector<std::string>> contentsOfDirectory(
      const platform::FileURL& location) const override;
  std::optional<platform::Error> createDirectory(const platform::FileURL& location) override;
  tl::expected<std::string, platform::Error> contentsOfFile(const platform::FileURL& location) const override;
  std::optional<platform::Error> writeData(std::string_view data, const platform::FileURL& location,
                                           platform::WriteOption option) override;
  std::optional<platform::Error> appendData(std::string_view data,
                                            const platform::FileURL& location) override;
  platform::FileURL resolvingSymlinks(const platform::FileURL& location) const override;
  platform::FileURL homeDirectory() const override { return files.homeDirectory(); }
  platform::FileURL homeDirectoryForCurrentUser() const override {
    return files.homeDirectoryForCurrentUser();
  }
  std::optional<platform::FileURL> containerURL(std::string_view applicationGroupIdentifier) const override;

 private:
  bool fails() const { return ++count == failing; }

  platform::FileSystem& files;
  std::size_t failing = 0;
  platform::Error failure;
  mutable std::atomic<std::size_t> count = 0;
};

}  // namespace sprig::test
