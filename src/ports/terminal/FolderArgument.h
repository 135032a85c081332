// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <tl/expected.hpp>

#include "platform/FileURL.h"
#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// What an argument names; or else how the program ends, `errors` having been told why.
using Located = tl::expected<platform::FileURL, ExitStatus>;

/// The folder an argument names, the current one without an argument.
Located existingFolder(const std::optional<std::string>& argument, const Screen& errors);

/// The file or folder an argument names.
Located existingItem(const std::string& argument, const Screen& errors);

}  // namespace sprig::terminal
