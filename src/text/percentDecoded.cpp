// SPDX-License-Identifier: GPL-3.0-or-later

#include "text/percentDecoded.h"

#include <charconv>

namespace sprig::text {

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const auto plain = text.substr(0, text.find('%'));
    result += plain;
    text.remove_prefix(plain.size());
    if (text.empty()) break;
    unsigned char byte = 0;
    const auto digits = text.substr(1, 2);
    const auto* end = digits.data() + digits.size();
    if (digits.size() < 2 || std::from_chars(digits.data(), end, byte, 16).ptr != end) return std::nullopt;
    result += static_cast<char>(byte);
    text.remove_prefix(3);
  }
  return result;
}

}  // namespace sprig::text
