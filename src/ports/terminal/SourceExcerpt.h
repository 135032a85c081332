#pragma once

#include <string>
#include <string_view>

#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// The line of a document that a problem of the form "line 3, column 7: ..." is in, and below it a mark at
/// the column. Empty for problems that name no line.
std::string excerptFor(std::string_view problem, std::string_view document, const Screen& screen);

}  // namespace sprig::terminal
