// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <tl/expected.hpp>

#include "config/AppConfigItem.h"
#include "platform/Error.h"
#include "platform/FileURL.h"

namespace sprig {

/// Larger files are no templates: each program that shows menus has the whole configuration in memory.
inline constexpr std::int64_t maxTemplateBytes = std::int64_t{16} << 20;

/// A template whose files are copies of this one, called as it is. Text stays text that people can edit,
/// unless it would be taken for placeholders; every other content is kept as Base64, byte for byte.
/// `id` is empty (see `newTemplateId`).
///
/// Threads: any. Failure: an `Error` if the file can't be read, or has more than `maxTemplateBytes`
///          (`EFBIG`).
tl::expected<TemplateItem, platform::Error> templateFromFile(const platform::FileURL& file);

/// An id for a new template of that name: readable, and neither an id nor a name of another template.
///
/// Threads: any.
std::string newTemplateId(const AppConfigItem& config, const std::string& name);

}  // namespace sprig
