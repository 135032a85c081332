// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "config/ConfigDocument.h"

namespace sprig {

/// The end of the names of files that hold templates to share.
inline constexpr std::string_view sharedTemplatesSuffix = ".sprig-template";

/// A document with some templates as they stand in another one, to be given to others.
std::string sharedTemplates(const ConfigDocument& document, const std::vector<std::size_t>& indices);

/// Adds the templates of such a document at the end, as they stand there, but for ids that are taken.
///
/// Failure: throws `DecodingError` if `text` is no such document.
void addShared(ConfigDocument& document, const std::string& text);

}  // namespace sprig
