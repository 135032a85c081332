// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/RowGeometry.h"

#include <algorithm>

namespace sprig::settings {

double RowGeometry::topOf(std::size_t row) const {
  const double rows = static_cast<double>(row) * rowHeight;
  return divided && row > *divided ? rows + dividerHeight : rows;
}

std::size_t RowGeometry::rowAt(double height) const {
  if (count == 0 || height <= 0) return 0;
  if (divided && height >= topOf(*divided)) {
    height = std::max(topOf(*divided), height - dividerHeight);
  }
  return std::min(static_cast<std::size_t>(height / rowHeight), count - 1);
}

RowGeometry::Range RowGeometry::rowsBetween(double top, double bottom, std::size_t spare) const {
  if (count == 0) return {};
  const auto first = rowAt(top);
  return {first - std::min(first, spare), std::min(rowAt(bottom) + 1 + spare, count)};
}

}  // namespace sprig::settings
