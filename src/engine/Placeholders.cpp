// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/Placeholders.h"

#include "engine/TemplateEngine.h"
#include "platform/Platform.h"

namespace sprig {

namespace {

constexpr std::string_view opening = "{{";
constexpr std::string_view closing = "}}";

/// A placeholder as it stands in a text.
struct Token {
  std::string_view key;
  std::size_t length = 0;
};

/// The token at the beginning of `text`, which begins with the opening braces; nothing when they open none.
std::optional<Token> tokenAtBeginning(std::string_view text) {
  const auto inside = text.substr(opening.size());
  const std::string_view space = inside.starts_with(' ') ? " " : "";
  const auto keyAndRest = inside.substr(space.size());
  std::size_t keyLength = 0;
  while (keyLength < keyAndRest.size() && keyAndRest[keyLength] >= 'a' && keyAndRest[keyLength] <= 'z') {
    ++keyLength;
  }
  const auto rest = keyAndRest.substr(keyLength);
  if (!rest.starts_with(space) || !rest.substr(space.size()).starts_with(closing)) return std::nullopt;
  return Token{keyAndRest.substr(0, keyLength),
               opening.size() + 2 * space.size() + keyLength + closing.size()};
}

std::string author() {
  const auto& platform = platform::current();
  const auto user = platform.process.environment("USER");
  return user ? *user : platform.users.fullUserName();
}

}  // namespace

const std::string* PlaceholderValues::find(std::string_view key) const {
  for (const auto& entry : values) {
    if (entry.key == key) return &entry.value;
  }
  return nullptr;
}

std::string substitutePlaceholders(std::string_view text, const PlaceholderValues& values) {
  std::string result;
  // Values are seldom much longer than their placeholders. Growing later would copy a large text once more.
  result.reserve(text.size() + text.size() / 8);
  std::size_t copied = 0;
  for (auto brace = text.find(opening); brace < text.size(); brace = text.find(opening, brace)) {
    const auto token = tokenAtBeginning(text.substr(brace));
    const auto* value = token ? values.find(token->key) : nullptr;
    if (value == nullptr) {
      ++brace;  // the next brace can still open a token, as in "{{{name}}}"
      continue;
    }
    result += text.substr(copied, brace - copied);
    result += *value;
    brace += token->length;
    copied = brace;
  }
  result += text.substr(copied);
  return result;
}

PlaceholderValues makePlaceholderValues(const std::optional<std::string>& folderName,
                                        const std::optional<std::string>& projectName,
                                        platform::Instant date) {
  const auto parts = platform::current().clock.components(date);
  const auto twoDigits = TemplateEngine::formatTwoDigits;
  const auto year = std::to_string(parts.year);
  const auto month = twoDigits(parts.month);
  const auto day = twoDigits(parts.day);
  const auto dateText = year + "-" + month + "-" + day;
  const auto timeText = twoDigits(parts.hour) + ":" + twoDigits(parts.minute) + ":" + twoDigits(parts.second);
  const auto folder = folderName.value_or("");

  PlaceholderValues values;
  values.set("date", dateText);
  values.set("time", timeText);
  values.set("datetime", dateText + " " + timeText);
  values.set("year", year);
  values.set("month", month);
  values.set("day", day);
  values.set("project", projectName.value_or(folder));
  values.set("folder", folder);
  values.set("author", author());
  return values;
}

}  // namespace sprig
