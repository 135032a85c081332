#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sprig {

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
/// Requires:  as `offsetInJson`, not nested deeper than recursion can go.
class JsonIndex {
 public:
  explicit JsonIndex(std::string_view text);

  /// As `offsetInJson` and `positionIn`.
  TextPosition position(const std::vector<JsonStep>& path) const;

  /// An object's or a list's entry, or the whole; `key` is empty in a list.
  struct Value {
    std::string key;
    std::size_t begin = 0;
    std::vector<Value> entries;
  };

 private:
  std::size_t charactersBefore(std::size_t offset) const;

  std::string_view document;
  Value root;
  std::vector<std::size_t> lineBegins;
  /// The number of characters before each block of bytes.
  std::vector<std::size_t> blocks;
};

}  // namespace sprig
