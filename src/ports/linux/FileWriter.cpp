// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/FileWriter.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "ports/linux/FileError.h"
#include "ports/linux/OpenFile.h"
#include "ports/linux/TemporaryFile.h"
#include "ports/linux/retrying.h"

namespace sprig::ports {

using platform::Error;
using platform::FileURL;

namespace {

constexpr mode_t newFileMode = 0666;
constexpr mode_t privateFileMode = 0600;
/// Opening never waits for a reader, nor takes over a terminal, whatever has been put at the location.
constexpr int withoutWaiting = O_NONBLOCK | O_NOCTTY;

}  // namespace

FileWriter::FileWriter(std::shared_ptr<SystemCalls> systemCalls, const FileURL& target)
    : calls(std::move(systemCalls)), location(target) {}

std::optional<Error> FileWriter::create(std::string_view data) {
  const auto folderLocation = location.deletingLastPathComponent();
  const OpenFolder folder(*calls, folderLocation);
  if (!folder.isOpen()) return failed("opening its folder");
  if (!folder.isAppendOnly()) return createIn(folder, data);
  TemporaryFile file(calls, folderLocation);
  if (file.create()) return createIn(folder, data);
  if (auto error = file.write(data, TemporaryFile::Flush::no)) return error;
  return file.publish(location.lastPathComponent());
}

std::optional<Error> FileWriter::createIn(const OpenFolder& folder, std::string_view data) {
  const auto name = location.lastPathComponent();
  OpenFile file(*calls, folder.descriptor(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL, newFileMode);
  if (!file.isOpen()) {
    const int code = errno;
    errno = code == EEXIST && folder.isLinkWithoutTarget(name.c_str()) ? ELOOP : code;
    return failed("opening the file");
  }
  struct stat own = {};
  const bool isKnown = retrying([&] { return calls->status(file.descriptor(), own); }) == 0;
  std::optional<Error> failure;
  if (!file.writeAll(data)) failure = failed("writing the data");
  if (!failure && !file.close()) failure = failed("closing the file");
  if (!failure) return std::nullopt;
  // Another program may have put its own file there meanwhile.
  const auto there = folder.entry(name.c_str());
  if (!isKnown || (there && isSameFile(own, *there))) {
    retrying([&] { return calls->unlinkAt(folder.descriptor(), name.c_str()); });
  }
  return failure;
}

std::optional<Error> FileWriter::append(std::string_view data) {
  const auto error = [this](std::string_view step) {
    return fileError(FileOperation::append, location, step, errno);
  };
  OpenFile file(*calls, AT_FDCWD, location.path().c_str(), O_WRONLY | O_APPEND | O_CREAT | withoutWaiting,
                privateFileMode);
  if (!file.isOpen()) return error("opening the file");
  const ssize_t written = retrying([&] { return calls->write(file.descriptor(), data.data(), data.size()); });
  if (written == -1) return error("writing the data");
  if (static_cast<std::size_t>(written) < data.size()) {
    return fileError(FileOperation::append, location, "writing all of the data at once", ENOSPC);
  }
  if (!file.close()) return error("closing the file");
  return std::nullopt;
}

Error FileWriter::failed(std::string_view step) const {
  return fileError(FileOperation::write, location, step, errno);
}

}  // namespace sprig::ports
