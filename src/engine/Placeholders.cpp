// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/Placeholders.h"

#include <algorithm>

#include "engine/TemplateEngine.h"
#include "platform/Platform.h"
#include "text/Text.h"

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

/// Makes the values that don't depend on the new file's name.
struct Surroundings {
  std::optional<std::string> folder;
  std::optional<std::string> project;
  platform::Instant date;

  std::optional<std::string> operator()(std::string_view key) const {
    if (key == "project") return project ? project : folder.value_or("");
    if (key == "folder") return folder.value_or("");
    if (key == "author") return author();
    const auto twoDigits = TemplateEngine::formatTwoDigits;
    const auto parts = platform::current().clock.components(date);
    auto year = std::to_string(parts.year);
    if (key == "year") return year;
    if (key == "month") return twoDigits(parts.month);
    if (key == "day") return twoDigits(parts.day);
    auto day = year + "-" + twoDigits(parts.month) + "-" + twoDigits(parts.day);
    auto time = twoDigits(parts.hour) + ":" + twoDigits(parts.minute) + ":" + twoDigits(parts.second);
    if (key == "date") return day;
    if (key == "time") return time;
    if (key == "datetime") return day + " " + time;
    return std::nullopt;
  }
};

/// Where the next "{{" is, if any, from `index` on. Code is full of single braces, at each of which a plain
/// search would stop; this one is told by the compiler's vectors which blocks hold none of both.
std::size_t nextOpening(std::string_view text, std::size_t index) {
  constexpr std::size_t block = 64;
  for (; text.size() - index > block; index += block) {
    const char* const bytes = text.data() + index;
    unsigned char isFound = 0;
    for (std::size_t offset = 0; offset < block; ++offset) {
      isFound |= static_cast<unsigned char>(bytes[offset] == '{') &
                 static_cast<unsigned char>(bytes[offset + 1] == '{');
    }
    if (isFound != 0) break;
  }
  return text.find(opening, index);
}

}  // namespace

PlaceholderValues::Entry PlaceholderValues::entryOf(std::string_view key, std::string value) {
  const bool isUnicode = text::isValidUTF8(value);
  return {std::string(key), std::move(value), isUnicode};
}

void PlaceholderValues::set(std::string_view key, std::string value) {
  const auto old =
      std::find_if(values.begin(), values.end(), [&](const auto& entry) { return entry.key == key; });
  if (old == values.end()) {
    values.push_back(entryOf(key, std::move(value)));
  } else {
    *old = entryOf(key, std::move(value));
  }
}

std::optional<PlaceholderValues::Value> PlaceholderValues::find(std::string_view key) const {
  auto entry =
      std::find_if(values.begin(), values.end(), [&](const auto& known) { return known.key == key; });
  if (entry == values.end()) {
    auto made = makeValue ? makeValue(key) : std::nullopt;
    if (!made) return std::nullopt;
    entry = values.insert(values.end(), entryOf(key, std::move(*made)));
  }
  return Value{entry->value, entry->isUnicode};
}

Substitution substitutePlaceholders(std::string_view text, const PlaceholderValues& values) {
  Substitution substitution;
  auto& result = substitution.text;
  // Values are seldom much longer than their placeholders. Growing later would copy a large text once more.
  result.reserve(text.size() + text.size() / 8);
  std::size_t copied = 0;
  for (auto brace = nextOpening(text, 0); brace < text.size(); brace = nextOpening(text, brace)) {
    const auto token = tokenAtBeginning(text.substr(brace));
    const auto value = token ? values.find(token->key) : std::nullopt;
    if (!value) {
      ++brace;  // the next brace can still open a token, as in "{{{name}}}"
      continue;
    }
    result += text.substr(copied, brace - copied);
    result += value->text;
    substitution.hasUnicodeValues &= value->isUnicode;
    brace += token->length;
    copied = brace;
  }
  result += text.substr(copied);
  return substitution;
}

PlaceholderValues makePlaceholderValues(const std::optional<std::string>& folderName,
                                        const std::optional<std::string>& projectName,
                                        platform::Instant date) {
  return PlaceholderValues(Surroundings{folderName, projectName, date});
}

}  // namespace sprig
