// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigDocument.h"

#include <algorithm>
#include <boost/json/parse.hpp>
#include <boost/json/value_to.hpp>
#include <optional>
#include <type_traits>
#include <utility>

#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"
#include "config/ConfigFields.h"
#include "text/Text.h"

namespace sprig {

namespace {

/// Entries of the lists and objects of a configuration stand so deep.
constexpr std::size_t depthOfTemplates = 2;
constexpr std::size_t depthOfSettings = 2;

/// The template that a text is; throws if it is none, or can't be one of a document.
TemplateItem decodeEntry(const std::string& text) {
  auto item = decodeTemplate(text);
  // In a list it is nested deeper.
  static_cast<void>(decodeConfig(R"({"version":1,"settings":{},"templates":[)" + text + "]}"));
  return item;
}

/// Moves what stands at `from` or behind it by `distance`; to move it back, a distance that wraps around.
void shift(JsonValue& value, std::size_t from, std::size_t distance) {
  if (value.end < from) return;
  if (value.begin >= from) value.begin += distance;
  value.end += distance;
  for (auto& entry : value.entries) {
    if (entry.value.end < from) continue;
    if (entry.begin >= from) entry.begin += distance;
    shift(entry.value, from, distance);
  }
}

}  // namespace

/// Edits the text and the index of a document, between two states that are configurations. An edit of one
/// template costs little, however many there are.
class ConfigDocument::Editor {
 public:
  explicit Editor(ConfigDocument& edited) : text(edited.document), root(edited.root) {}

  const JsonValue& list() const { return root.find("templates")->value; }
  const JsonValue& settings() const { return root.find("settings")->value; }

  /// `object` finds the record's object in the text as it is then.
  template <typename Record, typename Find>
  void setRecord(Find object, const Record& current, const Record& wanted, std::size_t depth) {
    forEachField<Record>([&](const auto& field) {
      if (current.*field.member == wanted.*field.member) return;
      setMember(object, field.key, current.*field.member, wanted.*field.member, depth);
    });
  }

  template <typename Find, typename Value>
  void writeMember(Find object, const char* key, const Value& value, std::size_t depth) {
    const JsonValue& container = object();
    const auto bytes = encodeValue(value, layoutIn(container, depth));
    if (const auto* entry = container.find(key)) return replace(entry->value.begin, entry->value.end, bytes);
    append(container, depth, "\"" + std::string(key) + "\": " + bytes);
  }

  void append(const JsonValue& container, std::size_t depth, const std::string& bytes) {
    const auto& entries = container.entries;
    if (entries.empty()) {
      replace(container.begin + 1, container.end - 1, lineBreak(depth) + bytes + lineBreak(depth - 1));
    } else {
      const auto end = entries.back().value.end;
      replace(end, end, "," + spaceBefore(container, entries.size() - 1) + bytes);
    }
  }

  /// As `append` and `remove`, without a look at the other templates.
  void insertTemplate(std::size_t index, const std::string& bytes) {
    const auto& entries = list().entries;
    if (entries.empty()) return append(list(), depthOfTemplates, bytes);
    const bool isLast = index == entries.size();
    const auto space = spaceBefore(list(), isLast ? index - 1 : index);
    const auto place = isLast ? entries.back().value.end : entries[index].begin;
    const auto begin = isLast ? place + 1 + space.size() : place;
    text.insert(place, isLast ? "," + space + bytes : bytes + "," + space);
    shift(root, isLast ? place + 1 : place, 1 + space.size() + bytes.size());
    auto value = indexOf(begin, bytes.size());
    mutableList().insert(entryAt(index), {value.begin, "", std::move(value)});
  }

  void removeTemplate(std::size_t index) {
    const auto& entries = list().entries;
    if (entries.size() == 1) return remove(list(), index);
    const bool isLast = index + 1 == entries.size();
    const auto begin = isLast ? entries[index - 1].value.end : entries[index].begin;
    const auto end = isLast ? entries[index].value.end : entries[index + 1].begin;
    text.erase(begin, end - begin);
    mutableList().erase(entryAt(index));
    shift(root, end, begin - end);
  }

  void remove(const JsonValue& container, std::size_t index) {
    const auto& entries = container.entries;
    if (entries.size() == 1) {
      replace(container.begin + 1, container.end - 1, "");
    } else if (index + 1 < entries.size()) {
      replace(entries[index].begin, entries[index + 1].begin, "");
    } else {
      replace(entries[index - 1].value.end, entries[index].value.end, "");
    }
  }

  void move(const JsonValue& container, std::size_t from, std::size_t to) {
    std::vector<std::size_t> order(container.entries.size());
    for (std::size_t index = 0; index < order.size(); ++index) order[index] = index;
    const auto at = [&](std::size_t index) { return order.begin() + static_cast<std::ptrdiff_t>(index); };
    from < to ? std::rotate(at(from), at(from + 1), at(to + 1)) : std::rotate(at(to), at(from), at(from + 1));
    const auto [first, last] = std::minmax(from, to);
    std::string bytes;
    for (auto index = first; index <= last; ++index) {
      const auto& entry = container.entries[order[index]];
      bytes += text.substr(entry.begin, entry.value.end - entry.begin);
      if (index == last) break;
      const auto end = container.entries[index].value.end;
      bytes += text.substr(end, container.entries[index + 1].begin - end);
    }
    replace(container.entries[first].begin, container.entries[last].value.end, bytes);
  }

  /// That of the document, for a new entry of a container; all on one line if the others are.
  JsonLayout layoutIn(const JsonValue& container, std::size_t depth) const {
    JsonLayout layout = layoutOfDocument();
    layout.depth = depth;
    const bool isOnOneLine =
        !container.entries.empty() && spaceBefore(container, 0).find('\n') == std::string::npos;
    if (isOnOneLine) layout.lineEnd.clear();
    return layout;
  }

 private:
  template <typename Find, typename Value>
  void setMember(Find object, const char* key, const std::optional<Value>& current,
                 const std::optional<Value>& wanted, std::size_t depth) {
    if (!wanted) return removeMember(object, key);
    if (current) return setMember(object, key, *current, *wanted, depth);
    writeMember(object, key, *wanted, depth);
  }

  template <typename Find, typename Value>
  void setMember(Find object, const char* key, const Value& current, const Value& wanted, std::size_t depth) {
    if constexpr (std::is_same_v<Value, TemplateScope>) {
      const auto inner = [=]() -> const JsonValue& { return object().find(key)->value; };
      setRecord(inner, current, wanted, depth + 1);
    } else {
      writeMember(object, key, wanted, depth);
    }
  }

  template <typename Find>
  void removeMember(Find object, const char* key) {
    while (const auto* entry = object().find(key)) {
      remove(object(), static_cast<std::size_t>(entry - object().entries.data()));
    }
  }

  void replace(std::size_t begin, std::size_t end, const std::string& bytes) {
    auto* edited = templateAround(begin, end);
    text.replace(begin, end - begin, bytes);
    if (edited == nullptr) {
      root = indexJson(text);
    } else {
      shift(root, end, bytes.size() - (end - begin));
      edited->value = indexOf(edited->begin, edited->value.end - edited->begin);
    }
  }

  std::vector<JsonEntry>& mutableList() {
    const auto place = root.find("templates") - root.entries.data();
    return root.entries[static_cast<std::size_t>(place)].value.entries;
  }

  std::vector<JsonEntry>::iterator entryAt(std::size_t index) {
    return mutableList().begin() + static_cast<std::ptrdiff_t>(index);
  }

  /// The template that some bytes stand in; null if they are not within one.
  JsonEntry* templateAround(std::size_t begin, std::size_t end) {
    auto& entries = mutableList();
    const auto found = std::partition_point(entries.begin(), entries.end(),
                                            [&](const JsonEntry& entry) { return entry.value.end <= begin; });
    const bool isWithin = found != entries.end() && found->begin < begin && end < found->value.end;
    return isWithin ? &*found : nullptr;
  }

  JsonValue indexOf(std::size_t begin, std::size_t size) const {
    auto value = indexJson(std::string_view(text).substr(begin, size));
    shift(value, 0, begin);
    return value;
  }

  /// What stands between an entry and the comma or bracket before it.
  std::string spaceBefore(const JsonValue& container, std::size_t index) const {
    const auto begin = container.entries[index].begin;
    const auto after = index == 0 ? container.begin : text.rfind(',', begin - 1);
    return text.substr(after + 1, begin - after - 1);
  }

  JsonLayout layoutOfDocument() const {
    const auto space = spaceBefore(root, 0);
    const auto end = space.rfind('\n');
    if (end == std::string::npos) return {"", "", 0};
    return {space.find('\r') == std::string::npos ? "\n" : "\r\n", space.substr(end + 1), 0};
  }

  std::string lineBreak(std::size_t depth) const {
    auto layout = layoutOfDocument();
    for (std::size_t level = 0; level < depth; ++level) layout.lineEnd += layout.indentation;
    return layout.lineEnd;
  }

  std::string& text;
  JsonValue& root;
};

ConfigDocument::ConfigDocument(std::string text)
    : document(std::move(text)), decoded(decodeConfig(document)), root(indexJson(document)) {}

std::vector<TemplateItem>::iterator ConfigDocument::templateAt(std::size_t index) {
  return decoded.templates.begin() + static_cast<std::ptrdiff_t>(index);
}

void ConfigDocument::setTemplate(std::size_t index, const TemplateItem& wanted) {
  auto item = decodeEntry(encodeValue(wanted, {}));
  Editor editor(*this);
  const auto object = [&]() -> const JsonValue& { return editor.list().entries[index].value; };
  editor.setRecord(object, decoded.templates[index], item, depthOfTemplates + 1);
  decoded.templates[index] = std::move(item);
}

void ConfigDocument::insertTemplate(std::size_t index, const TemplateItem& item) {
  Editor editor(*this);
  insertText(index, encodeValue(item, editor.layoutIn(editor.list(), depthOfTemplates)));
}

TemplateKey ConfigDocument::keyOf(std::size_t index) const {
  const auto& templates = decoded.templates;
  const auto at = templates.begin() + static_cast<std::ptrdiff_t>(index);
  const auto before =
      std::count_if(templates.begin(), at, [&](const auto& item) { return item.id == at->id; });
  return {at->id, static_cast<std::size_t>(before)};
}

std::optional<std::size_t> ConfigDocument::find(const TemplateKey& key) const {
  auto left = key.occurrence;
  for (std::size_t index = 0; index < decoded.templates.size(); ++index) {
    if (decoded.templates[index].id == key.id && left-- == 0) return index;
  }
  return std::nullopt;
}

std::string ConfigDocument::textOf(std::size_t index) const {
  const auto& value = root.find("templates")->value.entries[index].value;
  return document.substr(value.begin, value.end - value.begin);
}

void ConfigDocument::insertText(std::size_t index, const std::string& text) {
  auto item = decodeEntry(text);
  Editor(*this).insertTemplate(index, text);
  decoded.templates.insert(templateAt(index), std::move(item));
}

void ConfigDocument::setText(std::size_t index, const std::string& text) {
  const auto& value = root.find("templates")->value.entries[index].value;
  auto edited = document;
  *this = ConfigDocument(edited.replace(value.begin, value.end - value.begin, text));
}

void ConfigDocument::removeTemplate(std::size_t index) {
  Editor(*this).removeTemplate(index);
  decoded.templates.erase(templateAt(index));
}

void ConfigDocument::moveTemplate(std::size_t from, std::size_t to) {
  Editor editor(*this);
  editor.move(editor.list(), from, to);
  const auto first = std::min(from, to);
  const auto last = std::max(from, to);
  std::rotate(templateAt(first), templateAt(from < to ? first + 1 : last), templateAt(last + 1));
}

std::optional<std::string> ConfigDocument::otherText(std::size_t index, const std::string& key) const {
  const auto* entry = root.find("templates")->value.entries[index].value.find(key);
  if (entry == nullptr || document[entry->value.begin] != '"') return std::nullopt;
  const auto& value = entry->value;
  auto plain = document.substr(value.begin + 1, value.end - value.begin - 2);
  if (plain.find('\\') == std::string::npos) return plain;
  return boost::json::value_to<std::string>(
      boost::json::parse(document.substr(value.begin, value.end - value.begin)));
}

void ConfigDocument::setOtherText(std::size_t index, const std::string& key, const std::string& text) {
  if (!text::isValidUTF8(text)) throw DecodingError({}, localized("the text of \"%1%\" is not UTF-8", {key}));
  Editor editor(*this);
  const auto object = [&]() -> const JsonValue& { return editor.list().entries[index].value; };
  editor.writeMember(object, key.c_str(), text, depthOfTemplates + 1);
}

void ConfigDocument::setSettings(const AppSettingsItem& wanted) {
  auto edited = *this;
  Editor editor(edited);
  const auto object = [&]() -> const JsonValue& { return editor.settings(); };
  editor.setRecord(object, decoded.settings, wanted, depthOfSettings);
  *this = ConfigDocument(std::move(edited.document));
}

}  // namespace sprig
