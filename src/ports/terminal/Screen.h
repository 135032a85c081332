// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ports/terminal/DisplayText.h"

namespace sprig::terminal {

enum class Style { bold, dim, error };

/// One output stream for people: how wide it is, which characters and colours it can show. Colours are for
/// terminals that know them, and for people who have not set `NO_COLOR`.
///
/// Threads: main thread. Failure: what can't be written is lost, unless `write` is asked.
class Screen {
 public:
  explicit Screen(int streamDescriptor);

  bool isTerminal() const { return terminal; }
  Charset charset() const { return characters; }

  /// The terminal's width now; 80 for what is not a terminal.
  std::size_t columns() const;

  std::string text(std::string_view anything) const { return displayable(anything, characters); }

  /// Displayable text of at most `width` columns; uncut on what is not a terminal.
  std::string fittedText(std::string_view anything, std::size_t width, Cut cut = Cut::end) const;

  /// `displayableText` in a style, where the stream shows styles.
  std::string styled(std::string_view displayableText, Style style) const;

  std::string rule(std::size_t width) const;

  /// Text of several lines, each indented and, on a terminal, broken at its width.
  std::string paragraphs(std::string_view anything, std::size_t indentation) const;

  /// Writes as it is; false when the stream refuses.
  bool write(std::string_view output) const;

  /// Writes a line that begins with the program's name: what went wrong.
  void printError(std::string_view anything) const;

 private:
  int descriptor;
  Charset characters;
  bool terminal;
  bool colored;
};

}  // namespace sprig::terminal
