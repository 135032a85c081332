// SPDX-License-Identifier: GPL-3.0-or-later

#include "create/Base64.h"

#include <algorithm>
#include <string>

#include "fuzz/Check.h"
#include "fuzz/Targets.h"

namespace sprig::fuzz {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

void tryBase64(std::string_view input) {
  std::string digits;
  std::copy_if(input.begin(), input.end(), std::back_inserter(digits),
               [](char character) { return alphabet.find(character) != std::string_view::npos; });
  const auto bytes = decodeBase64(input);
  check(bytes || digits.size() != input.size() || digits.size() % 4 != 0, "whole groups are decoded");
  if (!bytes) return;
  check(bytes->size() == digits.size() * 6 / 8, "every digit counts");
  // The last digit of a padded group has bits that stand for nothing.
  auto again = encodeBase64(*bytes);
  check(again.size() % 4 == 0, "groups are whole");
  std::erase(again, '=');
  if (digits.size() % 4 != 0) {
    again.pop_back();
    digits.pop_back();
  }
  check(again == digits, "the bytes are those of the digits");
}

}  // namespace sprig::fuzz
