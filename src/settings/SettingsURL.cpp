// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/SettingsURL.h"

#include <algorithm>
#include <vector>

#include "text/Text.h"
#include "text/percentDecoded.h"

namespace sprig::settings {

namespace {

constexpr std::size_t maxURLBytes = 2000;  // bytes

char lowered(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
}

bool isEqualInAnyCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char one, char other) { return lowered(one) == lowered(other); });
}

/// What stands between the slashes, empty segments left out.
std::vector<std::string_view> segmentsOf(std::string_view path) {
  std::vector<std::string_view> segments;
  while (!path.empty()) {
    const auto end = std::min(path.find('/'), path.size());
    if (end != 0) segments.push_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return segments;
}

}  // namespace

std::optional<SettingsTarget> parseSettingsURL(std::string_view url) {
  constexpr std::string_view scheme = "sprig:";
  if (url.size() > maxURLBytes || !isEqualInAnyCase(url.substr(0, scheme.size()), scheme))
    return std::nullopt;
  if (url.find_first_of("?#") != std::string_view::npos) return std::nullopt;
  const auto segments = segmentsOf(url.substr(scheme.size()));
  if (segments.empty() || !isEqualInAnyCase(segments[0], "settings")) return std::nullopt;
  if (segments.size() == 1) return SettingsTarget{};
  if (segments.size() != 3 || segments[1] != "templates") return std::nullopt;
  auto id = text::percentDecoded(segments[2]);
  if (!id || !text::isValidUTF8(*id)) return std::nullopt;
  return SettingsTarget{std::move(id)};
}

}  // namespace sprig::settings
