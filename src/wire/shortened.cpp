// SPDX-License-Identifier: GPL-3.0-or-later

#include "wire/shortened.h"

#include <glib.h>

namespace sprig::wire {

namespace {

bool belongsToTheOneBefore(const char* character) {
  const auto code = g_utf8_get_char(character);
  return g_unichar_ismark(code) != FALSE || g_unichar_iszerowidth(code) != FALSE;
}

}  // namespace

std::string shortened(std::string_view text, std::size_t maxCharacters) {
  const auto count = g_utf8_strlen(text.data(), static_cast<gssize>(text.size()));
  if (static_cast<std::size_t>(count) <= maxCharacters) return std::string(text);
  const auto tailCharacters = static_cast<glong>(maxCharacters / 3);
  const auto headCharacters = static_cast<glong>(maxCharacters) - 1 - tailCharacters;
  const char* const end = text.data() + text.size();
  const char* const headEnd = g_utf8_offset_to_pointer(text.data(), headCharacters);
  const char* tail = g_utf8_offset_to_pointer(headEnd, count - headCharacters - tailCharacters);
  while (tail < end && belongsToTheOneBefore(tail)) tail = g_utf8_next_char(tail);
  return std::string(text.data(), headEnd).append("…").append(tail, end);
}

}  // namespace sprig::wire
