// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/AppConfigItem.h"
#include "platform/FileURL.h"
#include "translation/translated.h"

namespace sprig::settings {

/// The file that a template would become.
struct TemplatePreview {
  /// Its name, with the number that it would get if the name is taken.
  std::string filename;
  /// Its text; the bytes of one that has some of its own.
  std::string content;
  bool hasOwnBytes = false;
};

/// What a pick would make in a folder now, if the user left the suggested name as it is. Looks into the
/// folder.
TemplatePreview previewOf(const TemplateItem& item, const platform::FileURL& folder);

/// The bytes that a template has instead of a text; absent where it has none that can be used.
std::optional<std::string> ownBytes(const TemplateItem& item);

/// A placeholder and what it becomes, for people.
struct Placeholder {
  std::string_view token;
  /// Not translated yet.
  const char* meaning;
};

/// Those that file names and contents know. Threads: any.
std::vector<Placeholder> placeholdersOfNames();
std::vector<Placeholder> placeholdersOfContents();

}  // namespace sprig::settings
