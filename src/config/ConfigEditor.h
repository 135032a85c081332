// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <tl/expected.hpp>
#include <vector>

#include "config/ConfigDocument.h"
#include "platform/Error.h"
#include "platform/FileSystem.h"
#include "platform/FileURL.h"

namespace sprig {

/// Why the document on the disk was not changed.
struct ConfigEditError {
  enum class Reason {
    /// The document is no configuration; only `replaceText` writes over it.
    broken,
    /// It can't be read, or not be written.
    inaccessible,
    /// Others write it all the time, or `replaceText` was to replace another text than the one that is there.
    changedMeanwhile,
    /// What was to be written is no configuration, or can't be written as one: a text that isn't UTF-8.
    invalid,
  };
  Reason reason = Reason::inaccessible;
  /// One or more sentences for the user, without a full stop at the end.
  std::string description;
};

/// Changes the configuration document on the disk, for every program that does so: each change is applied to
/// what is there at that moment, so that programs and people who write at the same time don't lose one
/// another's changes. The document is replaced at once, whole and flushed to the disk; its mode stays, and
/// of a link to it the target is written. Where there is no document, the first change writes the built-in
/// templates and the change.
///
/// The document that the first change of this object finds is kept as a backup before; the last
/// `maxBackups` of them are kept, private to the user.
///
/// Threads:   one at a time; any number of objects and programs.
/// Ownership: nothing is held open between calls.
/// Failure:   a `ConfigEditError`; the document is then as it was. What a change throws goes through, but for
///            a `DecodingError`, which is `invalid`.
class ConfigEditor {
 public:
  static constexpr std::size_t maxBackups = 5;

  /// Has to change nothing but the document it gets, as it may be called again on a newer one. A document
  /// that it leaves as it is isn't written.
  using Change = std::function<void(ConfigDocument&)>;

  /// The document as it has been written; or as it is now, if nothing was to be changed.
  tl::expected<ConfigDocument, ConfigEditError> update(const Change& change);

  /// The document in force as it is now; with the built-in templates where there is none.
  static tl::expected<ConfigDocument, ConfigEditError> document();

  /// The text of the document in force, whether or not it is a configuration; absent where there is none.
  static tl::expected<std::optional<std::string>, ConfigEditError> text();

  /// Writes a whole text in place of another, which was read before (absent: there was none).
  std::optional<ConfigEditError> replaceText(const std::optional<std::string>& old,
                                             const std::string& wanted);

  /// Whether the document can be changed: false for one that is read-only for this user, or in such a folder.
  static bool isWritable();

  /// Where the first document is written while there is none.
  static platform::FileURL newDocumentURL();

  /// The backups' files, the newest first. Their names tell the time.
  static std::vector<platform::FileURL> backups();

 private:
  /// The document in force, and in which version it was read.
  struct Found {
    platform::FileURL url;
    std::optional<platform::FileVersion> version;
    std::optional<std::string> text;
  };
  static tl::expected<Found, ConfigEditError> read();
  /// What a text becomes; throws what the change throws.
  static tl::expected<ConfigDocument, ConfigEditError> changed(const std::optional<std::string>& text,
                                                               const Change& change);
  std::optional<platform::Error> write(const Found& found, const std::string& text);
  void keepBackup(const std::string& text);

  bool hasBackup = false;
};

}  // namespace sprig
