#pragma once

#include <stdexcept>
#include <string_view>

#include "config/AppConfigItem.h"

namespace sprig {

/// Why a document is not a configuration: one sentence that names the place, either "line 3, column 7: ..."
/// or the path to the value, "templates[3].enabled: expected true or false, found a number".
class DecodingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads a configuration document: JSON in UTF-8 (a byte-order mark is skipped). All or nothing.
///
/// Unknown keys are ignored. Where a key occurs twice, the last one counts. Integers must be written without
/// fraction or exponent and fit 64 bits. Objects and lists may be nested `maximumNesting` deep.
///
/// Threads: any. Failure: throws `DecodingError`.
AppConfigItem decodeConfig(std::string_view document);

/// How deep a document may nest; its known keys need five levels.
inline constexpr std::size_t maximumNesting = 128;

}  // namespace sprig
