// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>

#include "config/AppConfigItem.h"

namespace sprig {

/// How values are laid out.
struct JsonLayout {
  /// Between lines; empty: all on one line.
  std::string lineEnd = "\n";
  /// Before a line, for each object and list around it.
  std::string indentation = "  ";
  /// How many objects and lists stand around the value.
  std::size_t depth = 0;
};

/// Writes a configuration as a document people can edit: JSON in UTF-8, indented, one key a line, keys in the
/// order of the fields, absent fields left out. `decodeConfig` gives back an equal record for texts that are
/// UTF-8.
///
/// Threads: any.
std::string encodeConfig(const AppConfigItem& config);

/// Writes a part of a configuration into a document that has its own layout: a record, a list of texts, or a
/// single value. Without a line end after it.
template <typename Value>
std::string encodeValue(const Value& value, const JsonLayout& layout);

}  // namespace sprig
