// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sprig::text {

/// The bytes that a text stands for in which "%41" is "A"; any byte may come out, NUL as well. Nothing where
/// a percent sign is not followed by two hexadecimal digits.
///
/// Threads: any.
std::optional<std::string> percentDecoded(std::string_view text);

}  // namespace sprig::text
