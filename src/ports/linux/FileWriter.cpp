#include "ports/linux/FileWriter.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "ports/linux/FileError.h"
#include "ports/linux/retrying.h"

namespace sprig::ports {

using platform::Error;
using platform::FileURL;

namespace {

constexpr mode_t newFileMode = 0666;
/// Opening never waits for a reader, nor takes over a terminal, whatever has been put at the location.
constexpr int withoutWaiting = O_NONBLOCK | O_NOCTTY;

/// Of fixed length: the longest permitted target name would leave no room for an addition to it.
std::string randomTemporaryName() {
  std::uint64_t number = 0;
  arc4random_buf(&number, sizeof number);
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), ".sprig-%016" PRIx64, number);
  return name.data();
}

}  // namespace

FileWriter::FileWriter(SystemCalls& systemCalls, const FileURL& target)
    : calls(systemCalls), location(target), targetName(target.lastPathComponent()) {}

std::optional<Error> FileWriter::replaceAtomically(std::string_view data) {
  const OpenFile folder = openFolder();
  if (!folder.isOpen()) return failed("opening its folder");
  std::string temporary;
  OpenFile file = createTemporary(folder, temporary);
  if (!file.isOpen()) {
    const int code = errno;
    const std::string parent = location.deletingLastPathComponent().path();
    return fileError(FileOperation::write, location, "creating a temporary file in \"" + parent + "\"", code);
  }
  auto failure = store(data, file, Flush::toDisk);
  if (!failure && retrying([&] {
                    return calls.renameAt(folder.descriptor(), temporary.c_str(), targetName.c_str());
                  }) == -1) {
    failure = failed("moving the new file into place");
  }
  if (failure) calls.unlinkAt(folder.descriptor(), temporary.c_str());
  return failure;
}

std::optional<Error> FileWriter::writeInPlace(std::string_view data) {
  const OpenFile folder = openFolder();
  if (!folder.isOpen()) return failed("opening its folder");
  // Exclusive first: it tells whether a partial file would be ours to remove.
  OpenFile file(calls, folder.descriptor(), targetName.c_str(), O_WRONLY | O_CREAT | O_EXCL, newFileMode);
  const bool isOurs = file.isOpen();
  if (!isOurs && errno == EEXIST) {
    file = OpenFile(calls, folder.descriptor(), targetName.c_str(),
                    O_WRONLY | O_TRUNC | O_NOFOLLOW | withoutWaiting);
  }
  if (!file.isOpen()) return failed("opening the file");
  auto failure = store(data, file, Flush::no);
  if (failure && isOurs) calls.unlinkAt(folder.descriptor(), targetName.c_str());
  return failure;
}

std::optional<Error> FileWriter::append(std::string_view data) {
  const auto error = [this](std::string_view step) {
    return fileError(FileOperation::append, location, step, errno);
  };
  OpenFile file(calls, AT_FDCWD, location.path().c_str(), O_WRONLY | O_APPEND | withoutWaiting);
  if (!file.isOpen()) return error("opening the file");
  const ssize_t written = retrying([&] { return calls.write(file.descriptor(), data.data(), data.size()); });
  if (written == -1) return error("writing the data");
  if (static_cast<std::size_t>(written) < data.size()) {
    return fileError(FileOperation::append, location, "writing all of the data at once", ENOSPC);
  }
  if (!file.close()) return error("closing the file");
  return std::nullopt;
}

OpenFile FileWriter::openFolder() const {
  return {calls, AT_FDCWD, location.deletingLastPathComponent().path().c_str(), O_PATH | O_DIRECTORY};
}

OpenFile FileWriter::createTemporary(const OpenFile& folder, std::string& name) const {
  for (int attempts = 1;; ++attempts) {
    name = randomTemporaryName();
    OpenFile file(calls, folder.descriptor(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL, newFileMode);
    if (file.isOpen() || errno != EEXIST || attempts == 100) return file;
  }
}

std::optional<Error> FileWriter::store(std::string_view data, OpenFile& file, Flush flush) {
  if (!writeAll(file.descriptor(), data)) return failed("writing the data");
  if (flush == Flush::toDisk && retrying([&] { return calls.flush(file.descriptor()); }) == -1) {
    return failed("flushing the data to the disk");
  }
  if (!file.close()) return failed("closing the file");
  return std::nullopt;
}

bool FileWriter::writeAll(int descriptor, std::string_view data) {
  while (!data.empty()) {
    const ssize_t written = retrying([&] { return calls.write(descriptor, data.data(), data.size()); });
    if (written == -1) return false;
    if (written == 0) {
      errno = EIO;
      return false;
    }
    data.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

Error FileWriter::failed(std::string_view step) const {
  return fileError(FileOperation::write, location, step, errno);
}

}  // namespace sprig::ports
