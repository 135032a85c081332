// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

#include "platform/FileURL.h"

namespace sprig::terminal {

enum class NewFileResult { created, existsAlready, failed };

/// Creates a file with these bytes where nothing is: not even a link without a target, and not when another
/// program is quicker. A failure leaves no file, and its reason in `errno`.
NewFileResult createNewFile(const platform::FileURL& location, std::string_view data);

}  // namespace sprig::terminal
