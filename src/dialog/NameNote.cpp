// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/NameNote.h"

#include <glib.h>

#include "translation/translated.h"

namespace sprig::dialog {

namespace {

/// As the usual file systems have it.
constexpr std::size_t maxName = 255;  // bytes

std::string_view withoutSpaceAround(std::string_view name) {
  const char* begin = name.data();
  const char* end = begin + name.size();
  while (begin < end && g_unichar_isspace(g_utf8_get_char(begin)) != FALSE) begin = g_utf8_next_char(begin);
  while (begin < end) {
    const char* last = g_utf8_prev_char(end);
    if (g_unichar_isspace(g_utf8_get_char(last)) == FALSE) break;
    end = last;
  }
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

NameNote noteOn(std::string_view typed) {
  const auto name = withoutSpaceAround(typed);
  if (name.find('/') != std::string_view::npos) {
    return {NoteKind::problem, translated("File names can’t contain “/”.")};
  }
  if (name == "." || name == "..") {
    return {NoteKind::problem, translated("A file can’t be called “%1%”.", {name})};
  }
  if (name.size() > maxName) {
    return {NoteKind::problem,
            translated("This name may be too long: it has %1% bytes, and most file systems allow %2%.",
                       {std::to_string(name.size()), std::to_string(maxName)})};
  }
  if (name.substr(0, 1) == ".")
    return {NoteKind::hint, translated("Files whose names begin with “.” are hidden.")};
  return {};
}

}  // namespace sprig::dialog
