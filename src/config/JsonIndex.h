// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sprig {

struct JsonEntry;

/// A value of a JSON text and where it stands there: the bytes from `begin` to before `end`.
struct JsonValue {
  std::size_t begin = 0;
  std::size_t end = 0;
  /// Of an object or a list, in the text's order; a key that occurs twice has two.
  std::vector<JsonEntry> entries;

  /// The entry that counts for a key: the last one. Null when there is none.
  const JsonEntry* find(std::string_view key) const;
};

struct JsonEntry {
  /// Where the key begins in an object, and the value in a list.
  std::size_t begin = 0;
  /// Without escapes; empty in a list.
  std::string key;
  JsonValue value;
};

/// Where the values of a text stand.
///
/// Requires: `text` is JSON in UTF-8, perhaps behind a byte-order mark, not nested deeper than recursion can
/// go.
JsonValue indexJson(std::string_view text);

/// A step from a value to one in it: a key or an index.
using JsonStep = std::variant<std::string, std::size_t>;

/// Where the value at the end of a path begins, or the last one on the way that is there; of a key that
/// occurs twice, the last one counts. Keeps nothing, so the size of the text does not matter.
///
/// Requires: `text` is JSON in UTF-8, perhaps behind a byte-order mark.
std::size_t offsetInJson(std::string_view text, const std::vector<JsonStep>& path);

/// A place in a text as people count, from 1. Columns are characters, not bytes.
struct TextPosition {
  std::size_t line = 1;
  std::size_t column = 1;
};

/// The place of the byte at `offset`, or of the end for a larger one.
TextPosition positionIn(std::string_view text, std::size_t offset);

/// The places of the values of a text, to look up as many as there are: each costs little.
///
/// Threads:   any. Ownership: `text` outlives this.
/// Requires:  as `indexJson`.
class JsonIndex {
 public:
  explicit JsonIndex(std::string_view text);

  /// As `offsetInJson` and `positionIn`.
  TextPosition position(const std::vector<JsonStep>& path) const;

 private:
  std::size_t charactersBefore(std::size_t offset) const;

  std::string_view document;
  JsonValue root;
  std::vector<std::size_t> lineBegins;
  /// The number of characters before each block of bytes.
  std::vector<std::size_t> blocks;
};

}  // namespace sprig
