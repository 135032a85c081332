// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sprig::terminal {

/// The names that someone who typed `wanted` is likely to have meant, the nearest first, three at most.
std::vector<std::string> nearestNames(std::string_view wanted, const std::vector<std::string>& names);

}  // namespace sprig::terminal
