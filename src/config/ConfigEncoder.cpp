#include "config/ConfigEncoder.h"

#include <boost/json/serialize.hpp>
#include <boost/json/string_view.hpp>

#include "config/ConfigFields.h"

namespace sprig {

namespace {

/// Writes values one after the other, two spaces deeper for each object and list around them.
class Writer {
 public:
  std::string finish() && { return std::move(document) + "\n"; }

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
    if (!isFirstEntry) document += ',';
    isFirstEntry = false;
    beginLine();
  }

  void endBlock(char bracket, bool isEmpty) {
    --depth;
    isFirstEntry = false;
    if (!isEmpty) beginLine();
    document += bracket;
  }

  void beginLine() { document.append("\n").append(2 * depth, ' '); }

  std::string document;
  std::size_t depth = 0;
  bool isFirstEntry = true;
};

}  // namespace

std::string encodeConfig(const AppConfigItem& config) {
  Writer writer;
  writer.write(config);
  return std::move(writer).finish();
}

}  // namespace sprig
