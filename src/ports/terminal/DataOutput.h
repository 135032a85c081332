// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

#include "ports/terminal/ExitStatus.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// Writes what was asked for to standard output; when that refuses, says so on `errors` and fails.
ExitStatus printData(std::string_view data, const Screen& errors);

}  // namespace sprig::terminal
