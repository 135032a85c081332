// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sprig {

/// Decodes standard Base64. Characters outside its alphabet, such as line breaks, are skipped. Nothing when
/// what remains is not whole groups of four with padding at the end only.
///
/// Threads: any.
std::optional<std::string> decodeBase64(std::string_view text);

/// Encodes as standard Base64 with padding, on one line.
///
/// Threads: any.
std::string encodeBase64(std::string_view bytes);

}  // namespace sprig
