// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/NearestNames.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "text/Text.h"

namespace sprig::terminal {

namespace {

constexpr std::size_t maxNames = 3;

/// How many bytes must be added, dropped or replaced to turn one text into the other.
std::size_t editDistance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    auto diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < right.size(); ++j) {
      const auto replaced = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::vector<std::string> nearestNames(std::string_view wanted, const std::vector<std::string>& names) {
  const auto folded = text::lowercased(wanted);
  const auto farthest = std::max<std::size_t>(2, folded.size() / 3);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const auto& name : names) {
    const auto candidate = text::lowercased(name);
    const bool contains = !folded.empty() && candidate.find(folded) != std::string::npos;
    const auto distance = contains ? 0 : editDistance(folded, candidate);
    if (distance <= farthest) near.emplace_back(distance, name);
  }
  std::stable_sort(near.begin(), near.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  near.resize(std::min(near.size(), maxNames));
  std::vector<std::string> result;
  result.reserve(near.size());
  for (auto& entry : near) result.push_back(std::move(entry.second));
  return result;
}

}  // namespace sprig::terminal
