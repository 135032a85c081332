// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/DialogMessages.h"

#include <algorithm>
#include <array>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <cstdint>
#include <stdexcept>
#include <utility>

namespace sprig::dialog {

namespace json = boost::json;

namespace {

/// The largest width and icon that a window is made for, in pixels.
constexpr std::int64_t maxLength = 2000;
constexpr std::int64_t maxFontSize = 200;  // points
/// The end of the longest text that an input method could reach.
constexpr std::int64_t maxOffset = 1 << 20;
constexpr std::size_t maxButtons = 8;

constexpr std::array<std::pair<ButtonKey, std::string_view>, 3> buttonKeys = {
    {{ButtonKey::none, ""}, {ButtonKey::enter, "return"}, {ButtonKey::escape, "escape"}}};
constexpr std::array<std::pair<EventKind, std::string_view>, 4> eventKinds = {{{EventKind::shown, "shown"},
                                                                               {EventKind::button, "button"},
                                                                               {EventKind::field, "field"},
                                                                               {EventKind::close, "close"}}};

struct Malformed : std::runtime_error {
  using std::runtime_error::runtime_error;
};

template <typename Table, typename Value>
std::string_view nameIn(const Table& table, Value value) {
  return std::find_if(table.begin(), table.end(), [&](const auto& row) { return row.first == value; })
      ->second;
}

/// The values of an object by their keys; a missing or unsuitable one is `Malformed`.
class Fields {
 public:
  explicit Fields(const json::value& value) : object(value.if_object()) {
    if (object == nullptr) throw Malformed("expected an object");
  }

  const json::value* find(std::string_view key) const { return object->if_contains(key); }

  const json::value& get(std::string_view key) const {
    if (const auto* value = find(key)) return *value;
    throw Malformed("\"" + std::string(key) + "\" is missing");
  }

  std::string text(std::string_view key) const {
    const auto* text = get(key).if_string();
    if (text == nullptr) throw Malformed("\"" + std::string(key) + "\" is not a string");
    return {text->data(), text->size()};
  }

  std::string textOrEmpty(std::string_view key) const {
    return find(key) != nullptr ? text(key) : std::string();
  }

  bool isSet(std::string_view key) const {
    const auto* value = find(key);
    if (value == nullptr) return false;
    if (!value->is_bool()) throw Malformed("\"" + std::string(key) + "\" is not true or false");
    return value->get_bool();
  }

  std::int64_t number(std::string_view key, std::int64_t most) const {
    const auto* number = get(key).if_int64();
    if (number == nullptr || *number < 0 || *number > most) {
      throw Malformed("\"" + std::string(key) + "\" is not a number from 0 to " + std::to_string(most));
    }
    return *number;
  }

  std::int64_t numberOrZero(std::string_view key, std::int64_t most) const {
    return find(key) != nullptr ? number(key, most) : 0;
  }

  const json::array& list(std::string_view key) const {
    if (const auto* list = get(key).if_array()) return *list;
    throw Malformed("\"" + std::string(key) + "\" is not a list");
  }

  template <typename Table>
  auto named(std::string_view key, const Table& table) const {
    const auto name = text(key);
    for (const auto& row : table) {
      if (row.second == name) return row.first;
    }
    throw Malformed("\"" + std::string(key) + "\" can't be \"" + name + "\"");
  }

 private:
  const json::object* object;
};

json::value toJson(const IconSpec& icon) {
  return {{"names", json::array(icon.names.begin(), icon.names.end())},
          {"size", icon.size},
          {"description", icon.description}};
}

IconSpec iconIn(const json::value& value) {
  const Fields fields(value);
  IconSpec icon;
  for (const auto& name : fields.list("names")) {
    if (!name.is_string()) throw Malformed("a name of the icon is not a string");
    icon.names.emplace_back(name.get_string());
  }
  icon.size = static_cast<int>(fields.number("size", maxLength));
  icon.description = fields.text("description");
  return icon;
}

json::value toJson(const FieldSpec& field) {
  return {{"text", field.text},
          {"placeholder", field.placeholder},
          {"width", field.width},
          {"points", field.fontSize}};
}

FieldSpec fieldIn(const json::value& value) {
  const Fields fields(value);
  FieldSpec field;
  field.text = fields.text("text");
  field.placeholder = fields.textOrEmpty("placeholder");
  field.width = static_cast<int>(fields.number("width", maxLength));
  field.fontSize = static_cast<int>(fields.numberOrZero("points", maxFontSize));
  return field;
}

json::value toJson(const ButtonSpec& button) {
  return {{"title", button.title}, {"key", nameIn(buttonKeys, button.key)}};
}

ButtonSpec buttonIn(const json::value& value) {
  const Fields fields(value);
  return {fields.text("title"), fields.named("key", buttonKeys)};
}

json::value toJson(const Selection& selection) {
  return {{"location", selection.location}, {"length", selection.length}};
}

Selection selectionIn(const json::value& value) {
  const Fields fields(value);
  return {static_cast<std::size_t>(fields.number("location", maxOffset)),
          static_cast<std::size_t>(fields.number("length", maxOffset))};
}

json::object toJson(const Show& show) {
  json::object object{{"command", "show"},
                      {"title", show.title},
                      {"text", show.text},
                      {"floating", show.isFloating},
                      {"centered", show.isCentered},
                      {"accessory", show.isAccessory},
                      {"late", show.isLate},
                      {"activationToken", show.activationToken},
                      {"parentWindow", show.parentWindow}};
  if (show.icon) object["icon"] = toJson(*show.icon);
  if (show.field) object["field"] = toJson(*show.field);
  auto& buttons = object["buttons"].emplace_array();
  for (const auto& button : show.buttons) buttons.push_back(toJson(button));
  return object;
}

Show showIn(const Fields& fields) {
  Show show;
  show.title = fields.text("title");
  show.text = fields.text("text");
  if (const auto* icon = fields.find("icon")) show.icon = iconIn(*icon);
  if (const auto* field = fields.find("field")) show.field = fieldIn(*field);
  for (const auto& button : fields.list("buttons")) show.buttons.push_back(buttonIn(button));
  if (show.buttons.size() > maxButtons) throw Malformed("too many buttons");
  show.isFloating = fields.isSet("floating");
  show.isCentered = fields.isSet("centered");
  show.isAccessory = fields.isSet("accessory");
  show.isLate = fields.isSet("late");
  show.activationToken = fields.textOrEmpty("activationToken");
  show.parentWindow = fields.textOrEmpty("parentWindow");
  return show;
}

json::object toJson(const Change& change) {
  json::object object{{"command", "change"}};
  if (change.text) object["text"] = *change.text;
  if (change.selection) object["selection"] = toJson(*change.selection);
  if (change.comesToFront) object["front"] = true;
  if (!change.activationToken.empty()) object["activationToken"] = change.activationToken;
  return object;
}

Change changeIn(const Fields& fields) {
  Change change;
  if (fields.find("text") != nullptr) change.text = fields.text("text");
  if (const auto* selection = fields.find("selection")) change.selection = selectionIn(*selection);
  change.comesToFront = fields.isSet("front");
  change.activationToken = fields.textOrEmpty("activationToken");
  return change;
}

json::object toJson(const Close&) { return {{"command", "close"}}; }

Command commandIn(const Fields& fields) {
  const auto name = fields.text("command");
  if (name == "show") return showIn(fields);
  if (name == "change") return changeIn(fields);
  if (name == "close") return Close{};
  throw Malformed("there is no command \"" + name + "\"");
}

Event eventIn(const Fields& fields) {
  Event event;
  event.kind = fields.named("event", eventKinds);
  if (event.kind == EventKind::button) {
    event.button = static_cast<std::size_t>(fields.number("button", maxButtons - 1));
  }
  event.text = fields.textOrEmpty("text");
  event.activationToken = fields.textOrEmpty("activationToken");
  return event;
}

template <typename Message, typename Read>
tl::expected<Message, std::string> decode(std::string_view line, Read read) {
  boost::system::error_code error;
  const auto value = json::parse(line, error);
  if (error) return tl::unexpected("not JSON: " + error.message());
  try {
    return read(Fields(value));
  } catch (const Malformed& malformed) {
    return tl::unexpected<std::string>(malformed.what());
  }
}

}  // namespace

std::string encode(const Command& command) {
  return json::serialize(std::visit([](const auto& one) { return toJson(one); }, command)) + "\n";
}

std::string encode(const Event& event) {
  json::object object{{"event", nameIn(eventKinds, event.kind)}};
  if (event.kind == EventKind::button) object["button"] = event.button;
  if (event.kind != EventKind::shown) object["text"] = event.text;
  if (!event.activationToken.empty()) object["activationToken"] = event.activationToken;
  return json::serialize(object) + "\n";
}

tl::expected<Command, std::string> decodeCommand(std::string_view line) {
  return decode<Command>(line, commandIn);
}

tl::expected<Event, std::string> decodeEvent(std::string_view line) { return decode<Event>(line, eventIn); }

}  // namespace sprig::dialog
