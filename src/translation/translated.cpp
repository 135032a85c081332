// SPDX-License-Identifier: GPL-3.0-or-later

#include "translation/translated.h"

#include <libintl.h>

#include <boost/format.hpp>
#include <clocale>
#include <filesystem>
#include <span>
#include <system_error>
#include <vector>

namespace sprig {

namespace {

constexpr const char* domain = "sprig";
/// Between context and text in a catalogue.
constexpr char contextEnd = '\004';

/// Beside the program, also where it was built, if that is among others; else where it was installed to.
std::string catalogueFolder() {
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  if (error || folder.filename() != "bin") return SPRIG_LOCALE_FOLDER;
  return folder.parent_path() / "share/locale";
}

const char* catalogue() {
  static const char* const bound = [] {
    bindtextdomain(domain, catalogueFolder().c_str());
    bind_textdomain_codeset(domain, "UTF-8");
    return domain;
  }();
  return bound;
}

/// The language of the environment for this thread while it lives. The program's own stays as it is, as
/// messages of libraries go to the log.
class Language {
 public:
  Language() : before(own() == locale_t{} ? locale_t{} : uselocale(own())) {}
  ~Language() {
    if (before != locale_t{}) uselocale(before);
  }
  Language(const Language&) = delete;
  Language& operator=(const Language&) = delete;

 private:
  /// None where the environment names one that isn't installed.
  static locale_t own() {
    static const locale_t locale = newlocale(LC_MESSAGES_MASK, "", locale_t{});
    return locale;
  }

  const locale_t before;
};

std::string filled(const char* pattern, std::span<const std::string_view> values) {
  // Whatever a translation has, what is said is better than an end of the program.
  boost::format text;
  text.exceptions(boost::io::no_error_bits);
  text.parse(pattern);
  for (const auto value : values) text % value;
  return text.str();
}

}  // namespace

const char* translated(const char* text) {
  const Language language;
  return dgettext(catalogue(), text);
}

std::string translated(const char* text, std::initializer_list<std::string_view> values) {
  return filled(translated(text), {values.begin(), values.end()});
}

std::string translatedCount(const char* one, const char* many, std::size_t count,
                            std::initializer_list<std::string_view> values) {
  const Language language;
  const auto number = std::to_string(count);
  std::vector<std::string_view> all{number};
  all.insert(all.end(), values);
  return filled(dngettext(catalogue(), one, many, count), all);
}

LocalizedText localized(const char* text, std::initializer_list<LocalizedText> values) {
  std::vector<std::string_view> english;
  std::vector<std::string_view> shown;
  for (const auto& value : values) {
    english.emplace_back(value.english);
    shown.emplace_back(value.shown);
  }
  return {filled(text, english), filled(translated(text), shown)};
}

std::string translatedName(const char* context, const std::string& name) {
  const auto key = std::string(context) + contextEnd + name;
  const char* text = translated(key.c_str());
  return text == key.c_str() ? name : text;
}

}  // namespace sprig
