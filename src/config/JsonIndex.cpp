#include "config/JsonIndex.h"

#include <algorithm>
#include <boost/json/parse.hpp>

namespace sprig {

namespace {

/// Reads a text that is known to be JSON, so it looks only for what ends a value.
class Reader {
 public:
  explicit Reader(std::string_view json) : text(json), position(json.starts_with("\xEF\xBB\xBF") ? 3 : 0) {
    skipSpace();
  }

  JsonValue readValue() {
    JsonValue result;
    result.begin = position;
    if (isAtContainer()) {
      forEachEntry([&](std::size_t begin, std::string key) {
        result.entries.push_back({begin, std::move(key), readValue()});
      });
    } else {
      skipScalar();
    }
    result.end = position;
    return result;
  }

  /// Goes to the value that a step leads to; whether there is one.
  bool enter(const JsonStep& step) {
    if (!isAtContainer()) return false;
    std::size_t found = 0;
    std::size_t index = 0;
    forEachEntry([&](std::size_t, const std::string& key) {
      const auto* wantedKey = std::get_if<std::string>(&step);
      if (wantedKey != nullptr ? key == *wantedKey : index == std::get<std::size_t>(step)) found = position;
      ++index;
      skipValue();
    });
    if (found != 0) position = found;
    return found != 0;
  }

  std::size_t offset() const { return position; }

 private:
  bool isAtContainer() const { return text[position] == '{' || text[position] == '['; }

  /// Calls `visit` with the beginning and the key of each entry; it must go to the end of the entry's value.
  template <typename Visit>
  void forEachEntry(Visit visit) {
    const bool hasKeys = text[position] == '{';
    ++position;
    for (skipSpace(); text[position] != '}' && text[position] != ']'; skipSpace()) {
      const auto begin = position;
      visit(begin, hasKeys ? readKey() : std::string());
      skipSpace();
      if (text[position] == ',') ++position;
    }
    ++position;
  }

  std::string readKey() {
    const auto begin = position;
    skipString();
    const auto key = boost::json::parse(text.substr(begin, position - begin));
    skipSpace();
    ++position;  // the colon
    skipSpace();
    return {key.get_string().data(), key.get_string().size()};
  }

  void skipValue() {
    if (!isAtContainer()) return skipScalar();
    std::size_t depth = 0;
    do {
      if (text[position] == '"') {
        skipString();
        continue;
      }
      if (isAtContainer()) ++depth;
      if (text[position] == '}' || text[position] == ']') --depth;
      ++position;
    } while (depth > 0);
  }

  void skipScalar() {
    if (text[position] == '"') return skipString();
    position = std::min(text.find_first_of(",]} \t\r\n", position), text.size());
  }

  void skipString() {
    for (++position; text[position] != '"'; ++position) {
      if (text[position] == '\\') ++position;
    }
    ++position;
  }

  void skipSpace() { position = std::min(text.find_first_not_of(" \t\r\n", position), text.size()); }

  const std::string_view text;
  std::size_t position;
};

}  // namespace

const JsonEntry* JsonValue::find(std::string_view key) const {
  const auto found = std::find_if(entries.rbegin(), entries.rend(),
                                  [&](const JsonEntry& entry) { return entry.key == key; });
  return found == entries.rend() ? nullptr : &*found;
}

JsonValue indexJson(std::string_view text) { return Reader(text).readValue(); }

std::size_t offsetInJson(std::string_view text, const std::vector<JsonStep>& path) {
  Reader reader(text);
  auto deepest = reader.offset();
  for (const auto& step : path) {
    if (!reader.enter(step)) break;
    deepest = reader.offset();
  }
  return deepest;
}

TextPosition positionIn(std::string_view text, std::size_t offset) {
  const auto before = text.substr(0, offset);
  const auto lineBegin = before.rfind('\n') + 1;  // npos + 1 is 0
  const auto line = std::count(before.begin(), before.end(), '\n');
  // Bytes that continue a UTF-8 character do not count as columns.
  const auto column = std::count_if(before.begin() + static_cast<std::ptrdiff_t>(lineBegin), before.end(),
                                    [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
  return {static_cast<std::size_t>(line) + 1, static_cast<std::size_t>(column) + 1};
}

}  // namespace sprig
