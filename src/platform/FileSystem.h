// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

#include "platform/Error.h"
#include "platform/FileURL.h"

namespace sprig::platform {

/// What stands at a location once links have been followed. A link without a target is `none`.
enum class EntryKind { none, directory, other };

/// Tells one state of a file from another without reading it: which file it is, and when it was written.
struct FileVersion {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::int64_t bytes = 0;
  std::int64_t modifiedNanoseconds = 0;  // since 1970
  std::int64_t createdNanoseconds = 0;   // likewise; 0 where that is not known

  friend bool operator==(const FileVersion& left, const FileVersion& right) {
    return left.device == right.device && left.number == right.number && left.bytes == right.bytes &&
           left.modifiedNanoseconds == right.modifiedNanoseconds;
  }

  /// A new file may have the number of one that was removed just before.
  bool isSameFile(const FileVersion& other) const {
    return device == other.device && number == other.number && createdNanoseconds == other.createdNanoseconds;
  }
};

/// One folder, held open for many questions about its entries.
class Folder {
 public:
  virtual ~Folder() = default;

  /// Whether an entry called `name` exists, links followed (a link without a target does not).
  /// False for a name that is not one path component, and when the answer can't be had.
  virtual bool hasEntry(std::string_view name) const = 0;
};

/// A new file in a folder, whole and on the disk, that has no name there yet but for a hidden one.
///
/// Threads:   one at a time.
/// Ownership: unless it has been published, the file goes with this value.
/// Failure:   an `Error`; the file is still unpublished then.
class UnpublishedFile {
 public:
  virtual ~UnpublishedFile() = default;

  /// Gives the file its name, at once and whole; once only. Replaces nothing but a link without a target,
  /// which `Folder::hasEntry` doesn't count.
  ///
  /// `EEXIST` (in `POSIXErrorDomain`): the name is taken; the file can be published under another one. Where
  /// the file system can't refuse a taken name, only other programs that publish like this are kept from
  /// taking it at the same moment, and this may have to wait for them, for a bounded time.
  virtual std::optional<Error> publish(std::string_view name) = 0;
};

/// While it lives, no other program of this user holds the lock of the same file.
class FileLock {
 public:
  virtual ~FileLock() = default;
};

/// The file system as the product needs it.
///
/// Threads:   every operation may be called from any thread at any time.
/// Ownership: descriptors are opened and closed within one call; a `Folder` or an `UnpublishedFile` holds
/// some
///            while it lives.
/// Failure:   an `Error` where one is returned. `EACCES` and `EPERM` of anything that writes or creates are
///            `FileWriteNoPermissionError` in `CocoaErrorDomain`; the rest are in `POSIXErrorDomain`.
///            A failed write leaves no temporary file behind, nor a part of a new file.
/// Units:     sizes are bytes.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  virtual EntryKind entryKind(const FileURL& location) const = 0;

  bool fileExists(const FileURL& location) const { return entryKind(location) != EntryKind::none; }

  /// Opens `location` for questions. Never null: in a folder that can't be opened nothing exists.
  virtual std::unique_ptr<Folder> openFolder(const FileURL& location) const = 0;

  /// The names of a folder's entries, hidden ones included, without "." and "..", in no defined order;
  /// nothing when the folder can't be listed.
  virtual std::optional<std::vector<std::string>> contentsOfDirectory(const FileURL& location) const = 0;

  /// Creates a folder and every missing one above it. An existing folder is a success.
  virtual std::optional<Error> createDirectory(const FileURL& location) = 0;

  /// The whole file. Locations that are not regular files are an error, never a wait.
  virtual tl::expected<std::string, Error> contentsOfFile(const FileURL& location) const = 0;

  /// A new file with `data` as its content, to be published in the folder; its mode is 0666 less the umask.
  virtual tl::expected<std::unique_ptr<UnpublishedFile>, Error> prepareFile(std::string_view data,
                                                                            const FileURL& folder) = 0;

  /// Creates a file straight at its location, where others see it before it is whole; its mode is 0666 less
  /// the umask. Nothing is replaced and no link followed: `EEXIST` when the name is taken, `ELOOP` when a
  /// link without a target has it.
  virtual std::optional<Error> createFile(std::string_view data, const FileURL& location) = 0;

  /// Puts a new file with `data` in the place of a regular one, at once and whole, once it is on the disk;
  /// the mode stays, and so does the owner where that is allowed. No link is followed. `ESTALE` when another
  /// version than `expected` is found there, which then stays.
  virtual std::optional<Error> replaceFile(std::string_view data, const FileURL& location,
                                           const FileVersion& expected) = 0;

  /// Whether this user may write to what is there, links followed.
  virtual bool isWritable(const FileURL& location) const = 0;

  /// Removes a file, or a link itself. A missing one is a success.
  virtual std::optional<Error> removeFile(const FileURL& location) = 0;

  /// Waits for the lock of a file for no longer than half a second; null when it can't be had. The file is
  /// made if it is missing, empty and private, and so is its folder.
  virtual std::unique_ptr<FileLock> lockFile(const FileURL& location) = 0;

  /// Adds `data` to the end of a file in one write, links followed. A missing file is created, for its owner
  /// alone (mode 0600).
  virtual std::optional<Error> appendData(std::string_view data, const FileURL& location) = 0;

  /// The location with every link in it followed; the location itself where that can't be found out.
  virtual FileURL resolvingSymlinks(const FileURL& location) const = 0;

  /// The version of what is at the location, links followed; nothing where there is nothing.
  virtual std::optional<FileVersion> fileVersion(const FileURL& location) const = 0;

  /// The folders, links followed, whose entries decide what is found at the location: the one that holds it,
  /// those above, and the same of every link on the way. Where the location can't be reached, as far as it
  /// can.
  virtual std::vector<FileURL> foldersLeadingTo(const FileURL& location) const = 0;

  /// The home folder of the person who uses the system.
  virtual FileURL homeDirectory() const = 0;

  /// This program's own home for that person, where it may make folders as it likes.
  virtual FileURL homeDirectoryForCurrentUser() const = 0;

  /// Where this product's programs keep for that person what they have done.
  virtual FileURL stateDirectory() const = 0;

  /// Where that person keeps templates for every file manager; nothing where no such folder was chosen.
  virtual std::optional<FileURL> templatesDirectory() const = 0;

  /// The folder shared by the programs of one application group; nothing when there is none.
  virtual std::optional<FileURL> containerURL(std::string_view applicationGroupIdentifier) const = 0;
};

}  // namespace sprig::platform
