// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

#include "config/JsonIndex.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// The line of a document that a place is in, and below it a mark at the column.
std::string excerptAt(TextPosition place, std::string_view document, const Screen& screen);

}  // namespace sprig::terminal
