// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigDecoder.h"

#include <algorithm>
#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/monotonic_resource.hpp>
#include <boost/json/parser.hpp>
#include <boost/json/value.hpp>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

#include "config/ConfigFields.h"

namespace sprig {

namespace {

namespace json = boost::json;

/// Where in the document a value stands: a chain of keys and indices, made into text only for an error.
struct Path {
  const Path* parent = nullptr;
  const char* key = nullptr;
  std::size_t index = 0;

  std::string text() const {
    if (parent == nullptr) return {};
    const auto above = parent->text();
    if (key == nullptr) return above + "[" + std::to_string(index) + "]";
    return above.empty() ? key : above + "." + key;
  }

  std::vector<JsonStep> steps() const {
    if (parent == nullptr) return {};
    auto result = parent->steps();
    result.push_back(key == nullptr ? JsonStep(index) : JsonStep(key));
    return result;
  }
};

/// A value that is none of a configuration.
struct ValueError {
  std::vector<JsonStep> place;
  LocalizedText problem;
};

const char* nameOfType(const json::value& value) {
  switch (value.kind()) {
    case json::kind::null:
      return toTranslate("null");
    case json::kind::bool_:
      return value.get_bool() ? toTranslate("true") : toTranslate("false");
    case json::kind::string:
      return toTranslate("a string");
    case json::kind::array:
      return toTranslate("a list");
    case json::kind::object:
      return toTranslate("an object");
    default:
      return toTranslate("a number");
  }
}

[[noreturn]] void fail(const Path& path, const LocalizedText& what) {
  const auto place = path.text();
  // TRANSLATORS: where in a document, and what is wrong there
  throw ValueError{path.steps(),
                   localized("%1%: %2%", {place.empty() ? localized("the document") : place, what})};
}

/// `expected` is a text to translate.
[[noreturn]] void failType(const Path& path, const char* expected, const json::value& found) {
  fail(path, localized("expected %1%, found %2%", {localized(expected), localized(nameOfType(found))}));
}

const json::object& objectAt(const json::value& value, const Path& path) {
  if (const auto* object = value.if_object()) return *object;
  failType(path, toTranslate("an object"), value);
}

const json::array& listAt(const json::value& value, const Path& path) {
  if (const auto* list = value.if_array()) return *list;
  failType(path, toTranslate("a list"), value);
}

void decode(const json::value& value, const Path& path, std::string& result) {
  const auto* text = value.if_string();
  if (text == nullptr) failType(path, toTranslate("a string"), value);
  result.assign(text->data(), text->size());
}

void decode(const json::value& value, const Path& path, bool& result) {
  const auto* flag = value.if_bool();
  if (flag == nullptr) failType(path, toTranslate("true or false"), value);
  result = *flag;
}

void decode(const json::value& value, const Path& path, std::int64_t& result) {
  if (const auto* integer = value.if_int64()) {
    result = *integer;
  } else if (value.is_uint64()) {
    fail(path, localized("expected an integer of at most 9223372036854775807, found a larger one"));
  } else if (value.is_double()) {
    fail(path,
         localized("expected an integer, found a number with a fraction or exponent, or beyond 64 bits"));
  } else {
    failType(path, toTranslate("an integer"), value);
  }
}

template <typename Record>
void decode(const json::value& value, const Path& path, Record& record);

template <typename Element>
void decode(const json::value& value, const Path& path, std::vector<Element>& result) {
  const auto& list = listAt(value, path);
  result.resize(list.size());
  for (std::size_t index = 0; index < list.size(); ++index) {
    decode(list[index], Path{&path, nullptr, index}, result[index]);
  }
}

template <typename Value>
void decodeMember(const json::value* found, const Path& path, std::optional<Value>& result) {
  if (found != nullptr && !found->is_null()) decode(*found, path, result.emplace());
}

template <typename Value>
void decodeMember(const json::value* found, const Path& path, Value& result) {
  if (found == nullptr) fail(path, localized("missing"));
  decode(*found, path, result);
}

template <typename Record>
void decode(const json::value& value, const Path& path, Record& record) {
  const auto& object = objectAt(value, path);
  forEachField<Record>([&](const auto& field) {
    decodeMember(object.if_contains(field.key), Path{&path, field.key}, record.*field.member);
  });
}

LocalizedText quoteByte(char found) {
  if (found >= 0x20 && found < 0x7F) return std::string("\"") + found + "\"";
  char number[8];
  std::snprintf(number, sizeof number, "0x%02X", static_cast<unsigned>(static_cast<unsigned char>(found)));
  return localized("byte %1%", {std::string(number)});
}

/// What the parser says is wrong with a text; what is missing here stays in English.
[[maybe_unused]] constexpr const char* parserMessages[] = {
    toTranslate("syntax error"),
    toTranslate("exponent overflow"),
    toTranslate("illegal leading surrogate"),
    toTranslate("illegal trailing surrogate"),
    toTranslate("expected hex digit"),
    toTranslate("expected utf16 escape"),
};

LocalizedText describeSyntaxError(std::string_view rest, const boost::system::error_code& error) {
  if (rest.empty()) return localized("the document ends too early");
  if (error == json::error::too_deep) {
    return localized("nested more than %1% levels deep", {std::to_string(maximumNesting)});
  }
  const auto found = quoteByte(rest[0]);
  if (error == json::error::extra_data)
    return localized("expected the end of the document, found %1%", {found});
  const auto message = error.message();
  // TRANSLATORS: what is wrong with a document, and the letter where that shows
  return localized("%1% at %2%", {localized(message.c_str()), found});
}

std::string_view withoutByteOrderMark(std::string_view document) {
  using namespace std::string_view_literals;
  if (document.starts_with("\xEF\xBB\xBF"sv)) document.remove_prefix(3);
  const auto beginning = document.substr(0, 4);
  if (beginning.starts_with("\xFF\xFE"sv) || beginning.starts_with("\xFE\xFF"sv) ||
      beginning.find('\0') != std::string_view::npos) {
    throw DecodingError({}, localized("the document is not UTF-8 text (it looks like UTF-16 or UTF-32)"));
  }
  return document;
}

}  // namespace

DecodingError::DecodingError(LocalizedText sentence, TextPosition position)
    : std::runtime_error(sentence.english), text(std::move(sentence)), place(position) {}

DecodingError::DecodingError(TextPosition position, const LocalizedText& problem)
    : DecodingError(localized("line %1%, column %2%: %3%",
                              {std::to_string(position.line), std::to_string(position.column), problem}),
                    position) {}

namespace {

template <typename Record>
Record decodeDocument(std::string_view document) {
  document = withoutByteOrderMark(document);
  // The values are dropped as a whole once the records hold what they need.
  json::monotonic_resource memory(std::max<std::size_t>(document.size(), 4096));
  json::parse_options options;
  options.max_depth = maximumNesting;
  json::parser parser({}, options);
  parser.reset(&memory);
  boost::system::error_code error;
  // White space behind the value, too.
  const auto consumed = parser.write_some(document.data(), document.size(), error);
  if (!error && consumed < document.size()) error = json::error::extra_data;
  if (error) {
    throw DecodingError(positionIn(document, consumed),
                        describeSyntaxError(document.substr(consumed), error));
  }

  const json::value root = parser.release();
  Record record;
  try {
    decode(root, Path{}, record);
  } catch (const ValueError& fault) {
    throw DecodingError(positionIn(document, offsetInJson(document, fault.place)), fault.problem);
  }
  return record;
}

}  // namespace

AppConfigItem decodeConfig(std::string_view document) { return decodeDocument<AppConfigItem>(document); }

TemplateItem decodeTemplate(std::string_view document) { return decodeDocument<TemplateItem>(document); }

}  // namespace sprig
