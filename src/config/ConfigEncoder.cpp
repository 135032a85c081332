// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigEncoder.h"

#include <boost/json/serialize.hpp>
#include <boost/json/string_view.hpp>

#include "config/ConfigFields.h"

namespace sprig {

namespace {

/// Writes values one after the other, deeper for each object and list around them.
class Writer {
 public:
  explicit Writer(const JsonLayout& chosen) : layout(chosen), depth(chosen.depth) {}

  std::string finish() && { return std::move(document); }

  void write(const std::string& value) {
    document += boost::json::serialize(boost::json::string_view(value.data(), value.size()));
  }
  void write(bool value) { document += value ? "true" : "false"; }
  void write(std::int64_t value) { document += std::to_string(value); }

  template <typename Element>
  void write(const std::vector<Element>& list) {
    beginBlock('[');
    for (const auto& element : list) {
      beginEntry();
      write(element);
    }
    endBlock(']', list.empty());
  }

  template <typename Record>
  void write(const Record& record) {
    beginBlock('{');
    bool isEmpty = true;
    forEachField<Record>([&](const auto& field) {
      if (writeMember(field.key, record.*field.member)) isEmpty = false;
    });
    endBlock('}', isEmpty);
  }

 private:
  /// Whether anything was written.
  template <typename Value>
  bool writeMember(const char* key, const std::optional<Value>& value) {
    return value && writeMember(key, *value);
  }

  template <typename Value>
  bool writeMember(const char* key, const Value& value) {
    beginEntry();
    write(std::string(key));
    document += ": ";
    write(value);
    return true;
  }

  void beginBlock(char bracket) {
    document += bracket;
    ++depth;
    isFirstEntry = true;
  }

  void beginEntry() {
    if (!isFirstEntry) document += layout.lineEnd.empty() ? ", " : ",";
    isFirstEntry = false;
    beginLine();
  }

  void endBlock(char bracket, bool isEmpty) {
    --depth;
    isFirstEntry = false;
    if (!isEmpty) beginLine();
    document += bracket;
  }

  void beginLine() {
    if (layout.lineEnd.empty()) return;
    document += layout.lineEnd;
    for (std::size_t level = 0; level < depth; ++level) document += layout.indentation;
  }

  const JsonLayout& layout;
  std::size_t depth;
  std::string document;
  bool isFirstEntry = true;
};

}  // namespace

template <typename Value>
std::string encodeValue(const Value& value, const JsonLayout& layout) {
  Writer writer(layout);
  writer.write(value);
  return std::move(writer).finish();
}

template std::string encodeValue(const bool&, const JsonLayout&);
template std::string encodeValue(const std::int64_t&, const JsonLayout&);
template std::string encodeValue(const std::string&, const JsonLayout&);
template std::string encodeValue(const std::vector<std::string>&, const JsonLayout&);
template std::string encodeValue(const TemplateScope&, const JsonLayout&);
template std::string encodeValue(const TemplateItem&, const JsonLayout&);

std::string encodeConfig(const AppConfigItem& config) { return encodeValue(config, {}) + "\n"; }

}  // namespace sprig
