// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Clock.h"

namespace sprig {

/// What the placeholders of a text become: a value for each key. A key stands in a text as "{{key}}" or
/// "{{ key }}".
///
/// Threads: one at a time, readers too.
class PlaceholderValues {
 public:
  /// The value of a key; nothing for one that it doesn't know.
  using Maker = std::function<std::optional<std::string>(std::string_view key)>;

  /// `maker` is asked for keys that are not set, for each at most once and only if a text has it.
  explicit PlaceholderValues(Maker maker = nullptr) : makeValue(std::move(maker)) {}

  /// Replaces the value that the key has had.
  void set(std::string_view key, std::string value);

  /// What a placeholder becomes.
  struct Value {
    std::string_view text;
    bool isUnicode;
  };

  /// Nothing for a key that is not known. What is viewed stays until the next call.
  std::optional<Value> find(std::string_view key) const;

 private:
  struct Entry {
    std::string key;
    std::string value;
    bool isUnicode;
  };

  static Entry entryOf(std::string_view key, std::string value);

  Maker makeValue;
  /// Those that were set, and those that have been made.
  mutable std::vector<Entry> values;
};

/// A text with values in it.
struct Substitution {
  std::string text;
  /// Whether each value in it is Unicode. So is the text then, if it was so before.
  bool hasUnicodeValues = true;
};

/// The text with its placeholders filled in; everything else, unknown keys and other spellings included,
/// stays as written. One pass from left to right: inserted values are never searched again, so nothing a user
/// types can expand.
///
/// Threads: any. Cost: linear in the text.
Substitution substitutePlaceholders(std::string_view text, const PlaceholderValues& values);

/// The values shared by file names and contents: "date", "time", "datetime", "year", "month", "day",
/// "project", "folder" and "author".
PlaceholderValues makePlaceholderValues(const std::optional<std::string>& folderName,
                                        const std::optional<std::string>& projectName,
                                        platform::Instant date);

}  // namespace sprig
