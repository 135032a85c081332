// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/DisplayText.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cwchar>

namespace sprig::terminal {

namespace {

/// A character as it is shown.
struct Glyph {
  std::string bytes;
  std::size_t columns = 0;
};

struct StandIn {
  UChar32 character;
  const char* ascii;
};

constexpr StandIn standIns[] = {
    {0x00A0, " "},  {0x2013, "-"},  {0x2014, "-"},   {0x2018, "'"}, {0x2019, "'"},
    {0x201C, "\""}, {0x201D, "\""}, {0x2026, "..."}, {0x203A, ">"}, {0x2500, "-"},
};

bool isC0Control(UChar32 character) { return character < 0x20 || character == 0x7F; }

bool isForShowing(UChar32 character) {
  return !u_isISOControl(character) && !u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL) &&
         u_charType(character) != U_LINE_SEPARATOR && u_charType(character) != U_PARAGRAPH_SEPARATOR;
}

Glyph asciiGlyph(UChar32 character) {
  const auto* found = std::find_if(std::begin(standIns), std::end(standIns),
                                   [&](const auto& entry) { return entry.character == character; });
  const std::string bytes = found == std::end(standIns) ? "?" : found->ascii;
  return {bytes, bytes.size()};
}

Glyph glyphFor(UChar32 character, std::string_view bytes, Charset charset) {
  if (isC0Control(character)) return {{'^', static_cast<char>(character ^ 0x40)}, 2};
  if (!isForShowing(character)) return {"?", 1};
  if (character < 0x80) return {std::string(bytes), 1};
  if (charset == Charset::ascii) return asciiGlyph(character);
  const int columns = ::wcwidth(static_cast<wchar_t>(character));
  if (columns < 0) return {"?", 1};
  return {std::string(bytes), static_cast<std::size_t>(columns)};
}

/// Calls `visit` with each character and its bytes; what is not UTF-8 comes as U+FFFD.
template <typename Visit>
void forEachCharacter(std::string_view text, Visit visit) {
  const auto* data = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto size = static_cast<std::int64_t>(text.size());
  for (std::int64_t next = 0; next < size;) {
    const auto begin = next;
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(data, next, size, character);
    visit(character, text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(next - begin)));
  }
}

std::vector<Glyph> glyphs(std::string_view text, Charset charset) {
  constexpr std::string_view replacement = "\xEF\xBF\xBD";
  std::vector<Glyph> result;
  forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    result.push_back(glyphFor(character, character == 0xFFFD ? replacement : bytes, charset));
  });
  return result;
}

std::string joined(const std::vector<Glyph>& line) {
  std::string result;
  for (const auto& glyph : line) result += glyph.bytes;
  return result;
}

std::size_t columnsOf(const std::vector<Glyph>& line) {
  std::size_t columns = 0;
  for (const auto& glyph : line) columns += glyph.columns;
  return columns;
}

}  // namespace

std::string displayable(std::string_view text, Charset charset) { return joined(glyphs(text, charset)); }

std::size_t columnsOf(std::string_view text, Charset charset) { return columnsOf(glyphs(text, charset)); }

std::string fitted(std::string_view text, std::size_t columns, Cut cut, Charset charset) {
  auto line = glyphs(text, charset);
  if (columnsOf(line) <= columns) return joined(line);
  const auto ellipsis = displayable("…", charset);
  const auto ellipsisColumns = columnsOf(ellipsis, charset);
  if (columns < ellipsisColumns) return std::string(columns, '.');
  if (cut == Cut::start) std::reverse(line.begin(), line.end());
  auto width = columnsOf(line);
  while (width > columns - ellipsisColumns) {
    width -= line.back().columns;
    line.pop_back();
  }
  if (cut == Cut::end) return joined(line) + ellipsis;
  std::reverse(line.begin(), line.end());
  return ellipsis + joined(line);
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns, Charset charset) {
  std::vector<std::string> lines{""};
  std::size_t width = 0;
  for (std::size_t begin = 0; begin <= text.size();) {
    const auto end = std::min(text.find(' ', begin), text.size());
    const auto word = text.substr(begin, end - begin);
    const auto wordWidth = columnsOf(word, charset);
    if (begin > 0 && width > 0 && width + 1 + wordWidth > columns) {
      lines.emplace_back();
      width = 0;
    } else if (begin > 0) {
      lines.back() += ' ';
      ++width;
    }
    lines.back() += word;
    width += wordWidth;
    begin = end + 1;
  }
  return lines;
}

bool isEditable(std::string_view text) {
  bool result = true;
  forEachCharacter(text, [&](UChar32 character, std::string_view) {
    result = result && character != 0xFFFD && isForShowing(character);
  });
  return result;
}

}  // namespace sprig::terminal
