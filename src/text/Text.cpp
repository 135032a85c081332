// SPDX-License-Identifier: GPL-3.0-or-later

#include "text/Text.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <cstring>

namespace sprig::text {

namespace {

constexpr const char* rootLocale = "";

/// Where ASCII that goes on from `index` ends. Eight bytes at a time: texts can be large, and are mostly
/// ASCII.
std::size_t endOfASCII(std::string_view text, std::size_t index) {
  constexpr std::uint64_t highBits = 0x8080808080808080;
  std::uint64_t bytes = 0;
  for (; text.size() - index >= sizeof bytes; index += sizeof bytes) {
    std::memcpy(&bytes, text.data() + index, sizeof bytes);
    if ((bytes & highBits) != 0) break;
  }
  while (index < text.size() && static_cast<unsigned char>(text[index]) < 0x80) ++index;
  return index;
}

bool isASCII(std::string_view text) { return endOfASCII(text, 0) == text.size(); }

bool isWhiteSpace(UChar32 character) { return character >= 0 && u_isUWhiteSpace(character) != 0; }

bool isHorizontalWhiteSpace(UChar32 character) {
  return character == '\t' || (character >= 0 && u_charType(character) == U_SPACE_SEPARATOR);
}

/// The character at `index`, which moves past it; negative for bytes that are not UTF-8.
UChar32 nextCharacter(std::string_view text, std::size_t& index) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int64_t>(text.size());
  auto position = static_cast<std::int64_t>(index);
  UChar32 character = 0;
  U8_NEXT(bytes, position, length, character);
  index = static_cast<std::size_t>(position);
  return character;
}

/// The character that ends at `index`, which moves to its beginning.
UChar32 previousCharacter(std::string_view text, std::size_t& index) {
  // ICU steps back with 32-bit indices; a character needs no more than its last four bytes.
  const auto windowBegin = index < U8_MAX_LENGTH ? 0 : index - U8_MAX_LENGTH;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data()) + windowBegin;
  auto position = static_cast<std::int32_t>(index - windowBegin);
  UChar32 character = 0;
  U8_PREV(bytes, 0, position, character);
  index = windowBegin + static_cast<std::size_t>(position);
  return character;
}

template <typename Predicate>
std::string_view trim(std::string_view text, Predicate isTrimmed) {
  std::size_t begin = 0;
  while (begin < text.size()) {
    std::size_t next = begin;
    if (!isTrimmed(nextCharacter(text, next))) break;
    begin = next;
  }
  std::size_t end = text.size();
  while (end > begin) {
    std::size_t previous = end;
    if (!isTrimmed(previousCharacter(text, previous))) break;
    end = previous;
  }
  return text.substr(begin, end - begin);
}

icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

/// ICU replaces bytes that are not UTF-8; texts that hold some are handed back as they are.
template <typename Map>
std::string mapped(std::string_view text, Map map) {
  if (!isValidUTF8(text)) return std::string(text);
  std::string result;
  icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(text.size()));
  UErrorCode status = U_ZERO_ERROR;
  map(sink, status);
  return U_SUCCESS(status) ? result : std::string(text);
}

std::string uppercased(std::string_view text) {
  return mapped(text, [&](icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToUpper(rootLocale, 0, piece(text), sink, nullptr, status);
  });
}

std::string capitalizedWord(std::string_view word) {
  std::size_t firstLength = 0;
  nextCharacter(word, firstLength);
  const auto first = word.substr(0, firstLength);
  // The whole word is lowered, since a character's lower case can depend on what stands before it.
  return uppercased(first) + lowercased(word).substr(lowercased(first).size());
}

}  // namespace

std::string_view trimWhitespaceAndNewlines(std::string_view text) { return trim(text, isWhiteSpace); }

std::string_view trimHorizontalWhitespace(std::string_view text) {
  return trim(text, isHorizontalWhiteSpace);
}

std::string lowercased(std::string_view text) {
  return mapped(text, [&](icu::ByteSink& sink, UErrorCode& status) {
    icu::CaseMap::utf8ToLower(rootLocale, 0, piece(text), sink, nullptr, status);
  });
}

std::string capitalized(std::string_view text) {
  std::string result;
  std::size_t wordBegin = 0;
  for (std::size_t index = 0; index < text.size();) {
    std::size_t next = index;
    if (isWhiteSpace(nextCharacter(text, next))) {
      if (index > wordBegin) result += capitalizedWord(text.substr(wordBegin, index - wordBegin));
      result += text.substr(index, next - index);
      wordBegin = next;
    }
    index = next;
  }
  if (wordBegin < text.size()) result += capitalizedWord(text.substr(wordBegin));
  return result;
}

std::string canonicalForm(std::string_view text) {
  if (isASCII(text)) return std::string(text);
  return mapped(text, [&](icu::ByteSink& sink, UErrorCode& status) {
    const auto* composer = icu::Normalizer2::getNFCInstance(status);
    if (U_SUCCESS(status)) composer->normalizeUTF8(0, piece(text), sink, nullptr, status);
  });
}

bool isEqual(std::string_view left, std::string_view right) {
  if (left == right) return true;
  if (isASCII(left) && isASCII(right)) return false;
  return canonicalForm(left) == canonicalForm(right);
}

std::size_t utf16Length(std::string_view text) {
  std::size_t length = 0;
  for (std::size_t index = 0; index < text.size();) {
    const auto character = nextCharacter(text, index);
    length += character > 0xFFFF ? 2 : 1;
  }
  return length;
}

bool isValidUTF8(std::string_view text) {
  for (auto index = endOfASCII(text, 0); index < text.size(); index = endOfASCII(text, index)) {
    if (nextCharacter(text, index) < 0) return false;
  }
  return true;
}

std::string toValidUTF8(std::string_view text) {
  std::string result;
  for (std::size_t index = 0; index < text.size();) {
    const auto begin = index;
    if (nextCharacter(text, index) < 0) {
      result += "\xEF\xBF\xBD";
    } else {
      result += text.substr(begin, index - begin);
    }
  }
  return result;
}

}  // namespace sprig::text
