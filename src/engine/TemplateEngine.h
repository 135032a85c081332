// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "config/AppConfigItem.h"
#include "platform/FileURL.h"
#include "platform/Platform.h"

namespace sprig {

/// A file name split at its extension; `ext` is empty or begins with ".".
struct FilenameComponents {
  std::string base;
  std::string ext;
  friend bool operator==(const FilenameComponents&, const FilenameComponents&) = default;
};

/// What a template becomes: the name to create (which may be taken) and the text of the file.
struct RenderedTemplate {
  std::string filename;
  std::string content;
  /// False when a folder's or an account's name with stray bytes got into the content.
  bool isContentUnicode = true;
};

/// Turns templates into names and texts. No state.
///
/// Threads: any. Failure: none of these fails. No character of a name is replaced, removed or checked here.
class TemplateEngine {
 public:
  /// Renders a template. `userName` is the name the user typed for the file, taken as it is but for white
  /// space around it and a missing extension; absent or blank, the name comes from the template's pattern.
  /// `projectName` absent is `folderName`, and that absent is empty.
  static RenderedTemplate render(const TemplateItem& item, const std::optional<std::string>& userName,
                                 const std::optional<std::string>& folderName,
                                 const std::optional<std::string>& projectName,
                                 platform::Instant date = platform::current().clock.now());

  /// The name a template proposes on its own.
  static std::string renderSuggestedFilename(const TemplateItem& item,
                                             const std::optional<std::string>& folderName,
                                             const std::optional<std::string>& projectName,
                                             platform::Instant date = platform::current().clock.now());

  /// Splits a name, trimmed, at its last "."; a leading "." begins no extension.
  static FilenameComponents parseFilenameComponents(std::string_view filename);

  /// A name that is free in the folder: `filename` itself, or else numbered from 2, or on from the number it
  /// ends in. Nothing is reserved: another program may take the name in between.
  static std::string resolveCollision(const platform::FileURL& folderURL, const std::string& filename);

  /// At least two digits, as "%02d" gives them.
  static std::string formatTwoDigits(std::int64_t value);
};

}  // namespace sprig
