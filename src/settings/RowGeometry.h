// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>

namespace sprig::settings {

/// Where each row of a long list is, without a widget for each. Rows have the same height, but for a divider
/// above one of them. All lengths are pixels, from the list's top.
///
/// Threads: any.
struct RowGeometry {
  /// Some rows that follow one another; `last` is the one behind them.
  struct Range {
    std::size_t first = 0;
    std::size_t last = 0;
    bool has(std::size_t row) const { return row >= first && row < last; }
    friend bool operator==(const Range&, const Range&) = default;
  };

  std::size_t count = 0;
  double rowHeight = 1;
  /// The row under the divider; absent where there is none.
  std::optional<std::size_t> divided;
  double dividerHeight = 0;

  /// The upper border of a row, with its divider; for `count`, the height of the list.
  double topOf(std::size_t row) const;
  /// The rows between two heights, and up to `spare` more before and behind them.
  Range rowsBetween(double top, double bottom, std::size_t spare) const;

 private:
  /// The row at a height; that nearest to it if there is none.
  std::size_t rowAt(double height) const;
};

}  // namespace sprig::settings
