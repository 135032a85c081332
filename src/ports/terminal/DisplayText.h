// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Text as a terminal may be shown it. Names of files and templates come from anywhere; what goes through
/// here can't move the cursor, change colours or turn the direction of what surrounds it.
///
/// Threads: any. Failure: none.
namespace sprig::terminal {

/// What the terminal can show: decided by the locale.
enum class Charset { ascii, unicode };

/// Which end of a text is given up when it is too long.
enum class Cut { end, start };

/// One line of text. Control characters are in caret form ("^["), other characters that are not for showing,
/// or not in the character set, are "?" or an ASCII stand-in.
std::string displayable(std::string_view text, Charset charset);

/// How many columns a displayable text takes.
std::size_t columnsOf(std::string_view text, Charset charset);

/// A displayable text cut to a number of columns, with an ellipsis where something is missing.
std::string fitted(std::string_view text, std::size_t columns, Cut cut, Charset charset);

/// A displayable text broken at spaces into lines of at most `columns`; longer words stay whole.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns, Charset charset);

/// Whether a line editor can show the text as it is: nothing in it would have to be replaced.
bool isEditable(std::string_view text);

}  // namespace sprig::terminal
