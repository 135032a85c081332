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

/// Where the value at the end of a path begins, or the last one on the way that is there. Keeps nothing, so
/// the size of the text does not matter. Requires: as `indexJson`.
std::size_t offsetInJson(std::string_view text, const std::vector<JsonStep>& path);

/// A place in a text as people count, from 1. Columns are characters, not bytes.
struct TextPosition {
  std::size_t line = 1;
  std::size_t column = 1;
};

/// The place of the byte at `offset`, or of the end for a larger one.
TextPosition positionIn(std::string_view text, std::size_t offset);

}  // namespace sprig
