// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/JsonIndex.h"

#include <algorithm>
#include <boost/json/parse.hpp>
#include <iterator>
#include <utility>

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

  /// Calls `visit` with the beginning and the key of each entry, at its value, to the end of which it must
  /// go.
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

constexpr std::size_t blockSize = 1024;

/// Bytes that continue a UTF-8 character do not count.
std::size_t charactersIn(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

/// Null when there is none.
const JsonEntry* entryOf(const JsonValue& value, const JsonStep& step) {
  if (const auto* key = std::get_if<std::string>(&step)) return value.find(*key);
  const auto index = std::get<std::size_t>(step);
  return index < value.entries.size() ? &value.entries[index] : nullptr;
}

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
  return {static_cast<std::size_t>(line) + 1, charactersIn(before.substr(lineBegin)) + 1};
}

JsonIndex::JsonIndex(std::string_view text) : document(text), root(indexJson(text)), lineBegins{0} {
  for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', end + 1)) {
    lineBegins.push_back(end + 1);
  }
  std::size_t characters = 0;
  for (std::size_t begin = 0; begin <= text.size(); begin += blockSize) {
    blocks.push_back(characters);
    characters += charactersIn(text.substr(begin, blockSize));
  }
}

TextPosition JsonIndex::position(const std::vector<JsonStep>& path) const {
  const auto* value = &root;
  for (const auto& step : path) {
    const auto* next = entryOf(*value, step);
    if (next == nullptr) break;
    value = &next->value;
  }
  const auto line = std::upper_bound(lineBegins.begin(), lineBegins.end(), value->begin);
  const auto column = charactersBefore(value->begin) - charactersBefore(*std::prev(line)) + 1;
  return {static_cast<std::size_t>(line - lineBegins.begin()), column};
}

std::size_t JsonIndex::charactersBefore(std::size_t offset) const {
  const auto block = offset / blockSize;
  return blocks[block] + charactersIn(document.substr(block * blockSize, offset % blockSize));
}

}  // namespace sprig
