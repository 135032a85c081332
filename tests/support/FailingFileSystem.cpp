#include "support/FailingFileSystem.h"

#include <utility>

namespace sprig::test {

using platform::EntryKind;
using platform::Error;
using platform::FileURL;

namespace {

class NothingThere final : public platform::Folder {
 public:
  bool hasEntry(std::string_view) const override { return false; }
};

}  // namespace

void FailingFileSystem::failOperation(std::size_t number, Error error) {
  count = 0;
  failing = number;
  failure = std::move(error);
}

EntryKind FailingFileSystem::entryKind(const FileURL& location) const {
  return fails() ? EntryKind::none : files.entryKind(location);
}

std::unique_ptr<platform::Folder> FailingFileSystem::openFolder(const FileURL& location) const {
  if (fails()) return std::make_unique<NothingThere>();
  return files.openFolder(location);
}

std::optional<std::vector<std::string>> FailingFileSystem::contentsOfDirectory(
    const FileURL& location) const {
  if (fails()) return std::nullopt;
  return files.contentsOfDirectory(location);
}

std::optional<Error> FailingFileSystem::createDirectory(const FileURL& location) {
  return fails() ? failure : files.createDirectory(location);
}

tl::expected<std::string, Error> FailingFileSystem::contentsOfFile(const FileURL& location) const {
  if (fails()) return tl::unexpected(failure);
  return files.contentsOfFile(location);
}

std::optional<Error> FailingFileSystem::writeData(std::string_view data, const FileURL& location,
                                                  platform::WriteOption option) {
  return fails() ? failure : files.writeData(data, location, option);
}

std::optional<Error> FailingFileSystem::appendData(std::string_view data, const FileURL& location) {
  return fails() ? failure : files.appendData(data, location);
}

FileURL FailingFileSystem::resolvingSymlinks(const FileURL& location) const {
  return fails() ? location : files.resolvingSymlinks(location);
}

std::optional<FileURL> FailingFileSystem::containerURL(std::string_view applicationGroupIdentifier) const {
  if (fails()) return std::nullopt;
  return files.containerURL(applicationGroupIdentifier);
}

}  // namespace sprig::test
