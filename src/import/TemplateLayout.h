// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

/// The layout of a template's text in a document, where all line breaks are layout.
///
/// Threads: any.
namespace sprig {

/// The white space before the last line, if that stands before all lines but the first.
std::string indentationOf(const std::string& text);

/// With `now` instead of `before` at the beginning of each line but the first.
std::string reindented(const std::string& text, std::string_view before, std::string_view now);

}  // namespace sprig
