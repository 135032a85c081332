// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/LinuxFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "ports/linux/Descriptor.h"
#include "ports/linux/FileError.h"
#include "ports/linux/FileWriter.h"
#include "ports/linux/LockFile.h"
#include "ports/linux/OpenFile.h"
#include "ports/linux/TemporaryFile.h"
#include "ports/linux/retrying.h"

namespace sprig::ports {

using platform::EntryKind;
using platform::Error;
using platform::FileURL;

namespace {

constexpr off_t maximumFileSize = off_t{1} << 30;

class LinuxFolder final : public platform::Folder {
 public:
  explicit LinuxFolder(Descriptor openFolder) : folder(std::move(openFolder)) {}

  bool hasEntry(std::string_view name) const override {
    if (!FileURL::isPathComponent(name)) return false;
    // Names are asked for by the hundred: ordinary ones need no memory of their own, nor a cleared one.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    std::array<char, NAME_MAX + 1> terminated;
    if (name.size() >= terminated.size()) return exists(std::string(name).c_str());
    *std::copy(name.begin(), name.end(), terminated.begin()) = '\0';
    return exists(terminated.data());
  }

 private:
  bool exists(const char* name) const { return ::faccessat(folder.get(), name, F_OK, 0) == 0; }

  Descriptor folder;  // none: every question is answered with no
};

/// Reads to the end, whatever size was announced; false with `errno` on failure.
bool readAll(SystemCalls& calls, int descriptor, std::size_t announced, std::string& content) {
  std::size_t used = 0;
  content.resize(announced + 1);
  for (;;) {
    if (used == content.size()) content.resize(content.size() * 2);
    const ssize_t count =
        retrying([&] { return calls.read(descriptor, content.data() + used, content.size() - used); });
    if (count <= 0) {
      content.resize(used);
      return count == 0;
    }
    used += static_cast<std::size_t>(count);
    if (used > std::size_t{maximumFileSize}) {
      errno = EFBIG;
      return false;
    }
  }
}

/// Why a file of this kind and size is not read; 0 when it is.
int refusalToRead(const struct stat& status) {
  if (S_ISDIR(status.st_mode)) return EISDIR;
  if (!S_ISREG(status.st_mode)) return EINVAL;
  return status.st_size > maximumFileSize ? EFBIG : 0;
}

}  // namespace

LinuxFileSystem::LinuxFileSystem(std::shared_ptr<SystemCalls> systemCalls) : calls(std::move(systemCalls)) {}

EntryKind LinuxFileSystem::entryKind(const FileURL& location) const {
  struct stat status = {};
  if (::stat(location.path().c_str(), &status) == -1) return EntryKind::none;
  return S_ISDIR(status.st_mode) ? EntryKind::directory : EntryKind::other;
}

std::unique_ptr<platform::Folder> LinuxFileSystem::openFolder(const FileURL& location) const {
  const char* path = location.path().c_str();
  return std::make_unique<LinuxFolder>(
      Descriptor(retrying([&] { return ::open(path, O_PATH | O_DIRECTORY | O_CLOEXEC); })));
}

std::optional<std::vector<std::string>> LinuxFileSystem::contentsOfDirectory(const FileURL& location) const {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(location.path().c_str()), &::closedir);
  if (!folder) return std::nullopt;
  std::vector<std::string> names;
  errno = 0;
  // Safe: nobody else reads this folder stream. NOLINTNEXTLINE(concurrency-mt-unsafe)
  while (const dirent* entry = ::readdir(folder.get())) {
    const std::string_view name = static_cast<const char*>(entry->d_name);
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  if (errno != 0) return std::nullopt;
  return names;
}

std::optional<Error> LinuxFileSystem::createDirectory(const FileURL& location) {
  std::error_code failure;
  std::filesystem::create_directories(location.path(), failure);
  if (!failure) return std::nullopt;
  return fileError(FileOperation::createFolder, location, "creating it or a folder above it",
                   failure.value());
}

tl::expected<std::string, Error> LinuxFileSystem::contentsOfFile(const FileURL& location) const {
  const auto failed = [&](std::string_view step, int code) {
    return tl::unexpected(fileError(FileOperation::read, location, step, code));
  };
  const OpenFile file(*calls, AT_FDCWD, location.path().c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (!file.isOpen()) return failed("opening the file", errno);
  struct stat status = {};
  if (retrying([&] { return calls->status(file.descriptor(), status); }) == -1) {
    return failed("asking for its size", errno);
  }
  if (const int code = refusalToRead(status)) return failed("reading it as an ordinary file", code);
  std::string content;
  if (!readAll(*calls, file.descriptor(), static_cast<std::size_t>(status.st_size), content)) {
    return failed("reading the data", errno);
  }
  return content;
}

tl::expected<std::unique_ptr<platform::UnpublishedFile>, Error> LinuxFileSystem::prepareFile(
    std::string_view data, const FileURL& folder) {
  auto file = std::make_unique<TemporaryFile>(calls, folder);
  auto error = file->create();
  if (!error) error = file->write(data, TemporaryFile::Flush::toDisk);
  if (error) return tl::unexpected(std::move(*error));
  return file;
}

std::optional<Error> LinuxFileSystem::createFile(std::string_view data, const FileURL& location) {
  return FileWriter(calls, location).create(data);
}

std::optional<Error> LinuxFileSystem::replaceFile(std::string_view data, const FileURL& location,
                                                  const platform::FileVersion& expected) {
  TemporaryFile file(calls, location.deletingLastPathComponent());
  const auto name = location.lastPathComponent();
  if (auto error = file.create()) return error;
  // Before there is anything that somebody else could read.
  if (auto error = file.takeRightsOf(name)) return error;
  if (auto error = file.write(data, TemporaryFile::Flush::toDisk)) return error;
  return file.replace(name, expected);
}

bool LinuxFileSystem::isWritable(const FileURL& location) const {
  return ::faccessat(AT_FDCWD, location.path().c_str(), W_OK, AT_EACCESS) == 0;
}

std::optional<Error> LinuxFileSystem::removeFile(const FileURL& location) {
  if (::unlink(location.path().c_str()) == 0 || errno == ENOENT) return std::nullopt;
  return fileError(FileOperation::write, location, "removing the file", errno);
}

std::unique_ptr<platform::FileLock> LinuxFileSystem::lockFile(const FileURL& location) {
  auto lock = std::make_unique<LockFile>(location);
  return lock->isHeld() ? std::move(lock) : nullptr;
}

std::optional<Error> LinuxFileSystem::appendData(std::string_view data, const FileURL& location) {
  return FileWriter(calls, location).append(data);
}

FileURL LinuxFileSystem::resolvingSymlinks(const FileURL& location) const {
  const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(location.path().c_str(), nullptr),
                                                        &std::free);
  return resolved ? FileURL(resolved.get()) : location;
}

std::optional<platform::FileVersion> LinuxFileSystem::fileVersion(const FileURL& location) const {
  struct statx found = {};
  if (::statx(AT_FDCWD, location.path().c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &found) == -1) {
    return std::nullopt;
  }
  const auto nanoseconds = [](const statx_timestamp& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
  };
  const bool isCreationKnown = (found.stx_mask & STATX_BTIME) != 0;
  return platform::FileVersion{makedev(found.stx_dev_major, found.stx_dev_minor), found.stx_ino,
                               static_cast<std::int64_t>(found.stx_size), nanoseconds(found.stx_mtime),
                               isCreationKnown ? nanoseconds(found.stx_btime) : 0};
}

std::vector<FileURL> LinuxFileSystem::foldersLeadingTo(const FileURL& location) const {
  constexpr int maximumLinks = 40;  // as the kernel follows
  std::vector<FileURL> folders{FileURL("/")};
  auto rest = std::filesystem::path(location.path()).relative_path();
  std::filesystem::path reached = "/";
  for (int links = 0; !rest.empty();) {
    const auto next = reached / *rest.begin();
    rest = rest.lexically_relative(*rest.begin());
    if (rest == ".") rest.clear();
    std::error_code error;
    const auto status = std::filesystem::symlink_status(next, error);
    if (std::filesystem::is_symlink(status)) {
      const auto target = std::filesystem::read_symlink(next, error);
      if (error || ++links > maximumLinks) break;
      if (target.is_absolute()) reached = "/";
      rest = target.relative_path() / rest;
    } else if (std::filesystem::is_directory(status)) {
      reached = next.lexically_normal();
      folders.emplace_back(reached.string());
    } else {
      break;
    }
  }
  return folders;
}

FileURL LinuxFileSystem::homeDirectory() const {
  const auto home = process.environment("HOME");
  if (home && home->starts_with('/')) return FileURL(*home);
  return users.homeDirectory().value_or(FileURL("/"));
}

FileURL LinuxFileSystem::homeDirectoryForCurrentUser() const {
  return baseDirectory("XDG_DATA_HOME", ".local/share").appendingPath("sprig");
}

FileURL LinuxFileSystem::stateDirectory() const {
  return baseDirectory("XDG_STATE_HOME", ".local/state").appendingPath("sprig");
}

/// A line of the file is `XDG_TEMPLATES_DIR="$HOME/Templates"`, with backslashes as in a shell. To have the
/// home itself there means to have none.
std::optional<FileURL> LinuxFileSystem::templatesDirectory() const {
  constexpr std::string_view key = "\nXDG_TEMPLATES_DIR=\"";
  constexpr std::string_view home = "$HOME";
  const auto list = baseDirectory("XDG_CONFIG_HOME", ".config").appendingPath("user-dirs.dirs");
  const auto lines = "\n" + contentsOfFile(list).value_or("");
  const auto found = lines.rfind(key);
  if (found == std::string::npos) return std::nullopt;
  std::string path;
  for (auto at = found + key.size(); at < lines.size() && lines[at] != '"' && lines[at] != '\n'; ++at) {
    if (lines[at] == '\\' && at + 1 < lines.size()) ++at;
    path += lines[at];
  }
  if (path.starts_with(home)) path.replace(0, home.size(), homeDirectory().path());
  auto folder = FileURL(path.starts_with('/') ? path : "/").standardized();
  if (folder.path() == "/" || folder == homeDirectory()) return std::nullopt;
  return folder;
}

std::optional<FileURL> LinuxFileSystem::containerURL(std::string_view applicationGroupIdentifier) const {
  return baseDirectory("XDG_CONFIG_HOME", ".config").appendingPathComponent(applicationGroupIdentifier);
}

/// A base directory of the XDG rules, by which a relative path in the variable is as none.
FileURL LinuxFileSystem::baseDirectory(std::string_view variable, std::string_view defaultBelowHome) const {
  const auto folder = process.environment(variable);
  if (folder && folder->starts_with('/')) return FileURL(*folder);
  return homeDirectory().appendingPath(defaultBelowHome);
}

}  // namespace sprig::ports
