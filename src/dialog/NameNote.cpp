// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/NameNote.h"

#include <glib.h>

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
    return {NoteKind::problem, "File names can’t contain “/”."};
  }
  if (name == "." || name == "..") {
    return {NoteKind::problem, "A file can’t be called “" + std::string(name) + "”."};
  }
  if (name.size() > maxName) {
    return {NoteKind::problem, "This name may be too long: it has " + std::to_string(name.size()) +
                                   " bytes, and most file systems allow " + std::to_string(maxName) + "."};
  }
  if (name.substr(0, 1) == ".") return {NoteKind::hint, "Files whose names begin with “.” are hidden."};
  return {};
}

}  // namespace sprig::dialog
