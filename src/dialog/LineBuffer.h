// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sprig::dialog {

/// Makes lines of a stream of bytes.
class LineBuffer {
 public:
  /// Bytes. A longer line is a fault of the sender.
  static constexpr std::size_t maxLine = std::size_t{1} << 20;

  /// False when the line that has begun is too long already.
  bool add(std::string_view bytes) {
    buffered += bytes;
    const auto lineBreak = buffered.rfind('\n');
    const auto begin = lineBreak == std::string::npos ? 0 : lineBreak + 1;
    return buffered.size() - begin <= maxLine;
  }

  /// The next whole line without its line break; nothing until there is one.
  std::optional<std::string> takeLine() {
    const auto end = buffered.find('\n');
    if (end == std::string::npos) return std::nullopt;
    auto line = buffered.substr(0, end);
    buffered.erase(0, end + 1);
    return line;
  }

 private:
  std::string buffered;
};

}  // namespace sprig::dialog
