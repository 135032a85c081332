// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sprig::text {

/// A text that ends in a number: "notes 3" is the stem "notes" and the number 3.
struct TrailingNumber {
  std::string stem;
  std::int64_t number = 0;
  friend bool operator==(const TrailingNumber&, const TrailingNumber&) = default;
};

/// Splits `^(.*?)\s+(\d+)$`: any Unicode white space stands before the digits and belongs to neither part;
/// no line break may stand before it. Nothing when the whole text is not of that form, when the digits are
/// not ASCII, or when the number does not fit 64 bits.
///
/// Threads: any.
std::optional<TrailingNumber> splitTrailingNumber(std::string_view text);

}  // namespace sprig::text
