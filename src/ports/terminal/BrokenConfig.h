// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// Says on `errors`, in a line, that the configuration file is not used, and why; nothing when it is, or
/// there is none.
void warnOfBrokenConfig(const Screen& errors);

}  // namespace sprig::terminal
