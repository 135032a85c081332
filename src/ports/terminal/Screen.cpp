// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/Screen.h"

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "ports/linux/LinuxProcessInfo.h"
#include "ports/terminal/StandardStreams.h"

namespace sprig::terminal {

namespace {

constexpr std::size_t usualColumns = 80;
constexpr std::size_t minColumns = 20;

std::string environment(std::string_view variable) {
  return ports::LinuxProcessInfo().environment(variable).value_or("");
}

Charset charsetOfLocale() {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the locale once the program has begun.
  return std::string_view(::nl_langinfo(CODESET)) == "UTF-8" ? Charset::unicode : Charset::ascii;
}

bool wantsColor() {
  const auto type = environment("TERM");
  return !type.empty() && type != "dumb" && environment("NO_COLOR").empty();
}

std::string_view sequenceFor(Style style) {
  switch (style) {
    case Style::bold:
      return "\x1b[1m";
    case Style::dim:
      return "\x1b[2m";
    case Style::error:
      return "\x1b[1;31m";
  }
  return "";
}

}  // namespace

Screen::Screen(int streamDescriptor)
    : descriptor(streamDescriptor),
      characters(charsetOfLocale()),
      terminal(::isatty(streamDescriptor) == 1),
      colored(terminal && wantsColor()) {}

std::size_t Screen::columns() const {
  winsize size = {};
  if (!terminal || ::ioctl(descriptor, TIOCGWINSZ, &size) == -1 || size.ws_col == 0) return usualColumns;
  return std::max<std::size_t>(size.ws_col, minColumns);
}

std::string Screen::fittedText(std::string_view anything, std::size_t width, Cut cut) const {
  auto shown = text(anything);
  return terminal ? fitted(shown, width, cut, characters) : shown;
}

std::string Screen::styled(std::string_view displayableText, Style style) const {
  if (!colored) return std::string(displayableText);
  return std::string(sequenceFor(style)).append(displayableText).append("\x1b[0m");
}

std::string Screen::rule(std::size_t width) const {
  std::string line;
  for (std::size_t column = 0; column < width; ++column) line += text("─");
  return styled(line, Style::dim);
}

std::string Screen::paragraphs(std::string_view anything, std::size_t indentation) const {
  const std::string indent(indentation, ' ');
  // The last column stays free: some terminals wrap when it is written.
  const auto width = columns() - indentation - 1;
  std::string result;
  for (std::size_t begin = 0; begin <= anything.size();) {
    const auto end = std::min(anything.find('\n', begin), anything.size());
    const auto line = text(anything.substr(begin, end - begin));
    const auto lines = terminal ? wrapped(line, width, characters) : std::vector{line};
    for (const auto& part : lines) result.append(part.empty() ? "" : indent).append(part).append("\n");
    begin = end + 1;
  }
  return result;
}

bool Screen::write(std::string_view output) const { return writeFully(descriptor, output); }

void Screen::printError(std::string_view anything) const {
  const auto lines = paragraphs("sprig: " + std::string(anything), 0);
  static_cast<void>(write(lines));
}

}  // namespace sprig::terminal
