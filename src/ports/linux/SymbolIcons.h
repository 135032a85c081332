// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sprig::ports {

/// The name under which the icon theme has a symbol: one of our own drawings for the symbols that menus and
/// built-in templates use, the theme's icon for other well-known ones; any other name that could be one of
/// the theme's (lower-case letters, digits, "-") stands for itself. Nothing for a name that can't be.
///
/// Threads: any. Does not look into the theme.
std::optional<std::string> iconName(std::string_view symbolName);

/// Whether every icon theme has the symbol, or we do.
bool isKnownSymbol(std::string_view symbolName);

/// All of these, ours first.
std::vector<std::string_view> knownSymbols();

}  // namespace sprig::ports
