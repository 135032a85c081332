#pragma once

#include <string>

#include "config/AppConfigItem.h"

namespace sprig {

/// Writes a configuration as a document people can edit: JSON in UTF-8, indented, one key a line, keys in the
/// order of the fields, absent fields left out. `decodeConfig` gives back an equal record for texts that are
/// UTF-8.
///
/// Threads: any.
std::string encodeConfig(const AppConfigItem& config);

}  // namespace sprig
