// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "platform/FileURL.h"
#include "platform/Menu.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// The templates of a menu with their ids, submenus as headings.
std::string listingForPeople(const platform::Menu& entries, const Screen& screen);

/// The whole menu as one line of JSON; the manual describes it.
std::string listingAsJson(const platform::FileURL& folder, const platform::Menu& entries);

/// The titles of the menu's templates, one a line; titles that hold a line break are left out.
std::string templateTitles(const platform::Menu& entries);

}  // namespace sprig::terminal
