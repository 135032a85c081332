// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Operations on Unicode text held as UTF-8. None depends on the user's locale, none fails: bytes that are
/// not UTF-8 count as characters of no class and are passed through.
///
/// Threads: any.
namespace sprig::text {

/// Without white space and line breaks (Unicode White_Space) at both ends.
std::string_view trimWhitespaceAndNewlines(std::string_view text);

/// Without horizontal white space (tab and the Unicode space separators) at both ends; line breaks stay.
std::string_view trimHorizontalWhitespace(std::string_view text);

/// Every character in lower case.
std::string lowercased(std::string_view text);

/// In every word the first character in upper case and all others in lower case. Words are separated by
/// white space, which is left as it is; punctuation does not start a word.
std::string capitalized(std::string_view text);

/// The one spelling (NFC) shared by all canonically equivalent texts.
std::string canonicalForm(std::string_view text);

/// Whether two texts are canonically equivalent: the ordinary equality of texts.
bool isEqual(std::string_view left, std::string_view right);

/// Length in UTF-16 code units.
std::size_t utf16Length(std::string_view text);

bool isValidUTF8(std::string_view text);

/// The text with U+FFFD in place of everything that is not UTF-8.
std::string toValidUTF8(std::string_view text);

}  // namespace sprig::text
