// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

/// Texts for people, in the language of the environment (LANGUAGE, LC_ALL, LC_MESSAGES, LANG), as the files
/// in po/ have them; what has no translation there, and all of it in the C locale, is shown as it stands in
/// the code.
///
/// Not for log lines, names of files and what other programs read.
///
/// Texts given here are literals: the list of what is to be translated is made from the calls.
///
/// Threads:   any.
/// Ownership: pointers stay valid as long as the program runs.
namespace sprig {

/// The translation of a whole text: a sentence, a title or a label, never a part of one.
const char* translated(const char* text);

/// The same with values in it: "%1%" stands for the first one, and so on, in any order.
std::string translated(const char* text, std::initializer_list<std::string_view> values);

/// For texts that depend on a number, which is "%1%"; the values begin with "%2%".
std::string translatedCount(const char* one, const char* many, std::size_t count,
                            std::initializer_list<std::string_view> values = {});

/// The translation of a name that may be the user's own as well, in which case it stays as it is. `context`
/// says what it names, so that no other text's translation is taken for it.
std::string translatedName(const char* context, const std::string& name);

/// A text that goes to the log, where it is English, as well as to people.
struct LocalizedText {
  /// What is the same in all languages: a name, a number.
  // NOLINTNEXTLINE(google-explicit-constructor): a value among those of `localized`.
  LocalizedText(const std::string& same) : LocalizedText(same, same) {}
  LocalizedText(std::string logged, std::string translation)
      : english(std::move(logged)), shown(std::move(translation)) {}

  std::string english;
  std::string shown;
};

/// Both forms of a whole text, whose values are as those of `translated`.
LocalizedText localized(const char* text, std::initializer_list<LocalizedText> values = {});

/// Marks a literal in a table, which is translated where it is shown.
constexpr const char* toTranslate(const char* text) { return text; }
/// The same for a name, as above.
constexpr const char* toTranslateName(const char* /*context*/, const char* name) { return name; }

}  // namespace sprig
