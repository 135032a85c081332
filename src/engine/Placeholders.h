// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"

namespace sprig {

/// What the placeholders of a text become: a value for each key. A key stands in a text as "{{key}}" or
/// "{{ key }}".
class PlaceholderValues {
 public:
  /// Requires: `key` outlives this object and is not set yet.
  void set(std::string_view key, std::string value) { values.push_back({key, std::move(value)}); }

  /// Null for a key that is not known.
  const std::string* find(std::string_view key) const;

 private:
  struct Entry {
    std::string_view key;
    std::string value;
  };
  std::vector<Entry> values;
};

/// The text with its placeholders filled in; everything else, unknown keys and other spellings included,
/// stays as written. One pass from left to right: inserted values are never searched again, so nothing a user
/// types can expand.
///
/// Threads: any. Cost: linear in the text.
std::string substitutePlaceholders(std::string_view text, const PlaceholderValues& values);

/// The values shared by file names and contents: "date", "time", "datetime", "year", "month", "day",
/// "project", "folder" and "author".
PlaceholderValues makePlaceholderValues(const std::optional<std::string>& folderName,
                                        const std::optional<std::string>& projectName,
                                        platform::Instant date);

}  // namespace sprig
