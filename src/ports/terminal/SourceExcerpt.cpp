// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/SourceExcerpt.h"

#include <algorithm>

namespace sprig::terminal {

namespace {

constexpr std::size_t indentation = 2;

std::string_view lineAt(std::string_view document, std::size_t number) {
  std::size_t begin = 0;
  for (; number > 1; --number) {
    const auto end = document.find('\n', begin);
    if (end == std::string_view::npos) return {};
    begin = end + 1;
  }
  auto line = document.substr(begin, document.find('\n', begin) - begin);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// How many bytes the first `count` characters of a line take.
std::size_t bytesOf(std::string_view line, std::size_t count) {
  std::size_t offset = 0;
  for (; count > 0 && offset < line.size(); --count) {
    do {
      ++offset;
    } while (offset < line.size() && (static_cast<unsigned char>(line[offset]) & 0xC0) == 0x80);
  }
  return offset;
}

/// Indentation by tabs needs no marks.
std::string withoutTabs(std::string_view line) {
  std::string result(line);
  std::replace(result.begin(), result.end(), '\t', ' ');
  return result;
}

}  // namespace

std::string excerptAt(TextPosition place, std::string_view document, const Screen& screen) {
  const auto line = withoutTabs(lineAt(document, place.line));
  const auto position = bytesOf(line, place.column - 1);
  // Documents may be one long line: half the width before the place is shown, and as much behind it.
  const auto half = (screen.columns() - indentation - 1) / 2;
  const auto before = fitted(screen.text(line.substr(0, position)), half, Cut::start, screen.charset());
  const auto behind = fitted(screen.text(line.substr(position)), half, Cut::end, screen.charset());
  const std::string indent(indentation, ' ');
  const std::string space(columnsOf(before, screen.charset()), ' ');
  return indent + before + behind + "\n" + indent + space + screen.styled("^", Style::bold) + "\n";
}

}  // namespace sprig::terminal
