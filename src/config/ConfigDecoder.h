// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "config/AppConfigItem.h"
#include "config/JsonIndex.h"
#include "translation/translated.h"

namespace sprig {

/// Why a document is not a configuration: one sentence that names the place, and the value if there is one,
/// "line 41, column 16: templates[3].enabled: expected true or false, found a number". `what()` is it in
/// English.
class DecodingError : public std::runtime_error {
 public:
  DecodingError(TextPosition position, const LocalizedText& problem);

  TextPosition position() const { return place; }
  const LocalizedText& sentence() const { return text; }

 private:
  DecodingError(LocalizedText sentence, TextPosition position);

  LocalizedText text;
  TextPosition place;
};

/// Reads a configuration document: JSON in UTF-8 (a byte-order mark is skipped). All or nothing.
///
/// Unknown keys are ignored. Where a key occurs twice, the last one counts. Integers must be written without
/// fraction or exponent and fit 64 bits. Objects and lists may be nested `maximumNesting` deep.
///
/// Threads: any. Failure: throws `DecodingError`.
AppConfigItem decodeConfig(std::string_view document);

/// Reads a document that is one template, by the same rules.
TemplateItem decodeTemplate(std::string_view document);

/// How deep a document may nest; its known keys need five levels.
inline constexpr std::size_t maximumNesting = 128;

}  // namespace sprig
