// SPDX-License-Identifier: GPL-3.0-or-later

#include "create/Base64.h"

#include <array>
#include <cstdint>

namespace sprig {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::int8_t unknown = -1;

constexpr std::array<std::int8_t, 256> makeValues() {
  std::array<std::int8_t, 256> values{};
  values.fill(unknown);
  for (std::size_t value = 0; value < alphabet.size(); ++value) {
    values[static_cast<unsigned char>(alphabet[value])] = static_cast<std::int8_t>(value);
  }
  return values;
}

constexpr auto values = makeValues();

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 3);
  std::uint32_t bits = 0;
  std::size_t digits = 0;
  std::size_t padding = 0;
  for (const char character : text) {
    if (character == '=') {
      ++padding;
      continue;
    }
    const auto value = values[static_cast<unsigned char>(character)];
    if (value == unknown) continue;
    if (padding != 0) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(value);
    if (++digits % 4 == 0) {
      bytes += {static_cast<char>(bits >> 16), static_cast<char>(bits >> 8), static_cast<char>(bits)};
    }
  }
  const auto rest = digits % 4;
  if (rest == 1 || padding != (4 - rest) % 4) return std::nullopt;
  if (rest == 2) bytes += static_cast<char>(bits >> 4);
  if (rest == 3) bytes += {static_cast<char>(bits >> 10), static_cast<char>(bits >> 2)};
  return bytes;
}

std::string encodeBase64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t begin = 0; begin < bytes.size(); begin += 3) {
    const auto group = bytes.substr(begin, 3);
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      bits = bits << 8 | (index < group.size() ? static_cast<unsigned char>(group[index]) : 0U);
    }
    for (std::size_t digit = 0; digit < 4; ++digit) {
      text += digit <= group.size() ? alphabet[bits >> (18 - 6 * digit) & 0x3F] : '=';
    }
  }
  return text;
}

}  // namespace sprig
