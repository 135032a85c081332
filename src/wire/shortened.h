// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sprig::wire {

/// A text with an ellipsis in place of its middle when it has more than `maxCharacters` code points, so that
/// this many are left at most. What marks the character before it stays with that, or goes with it.
///
/// Requires: `text` is UTF-8, and `maxCharacters` is not 0. Threads: any.
std::string shortened(std::string_view text, std::size_t maxCharacters);

}  // namespace sprig::wire
