// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>

#include "config/AppConfigItem.h"

/// What the benchmarks work on: made up, but as large and as varied as what people have.
///
/// Threads: any. Failure: throws when a file can't be written.
namespace sprig::bench {

/// A configuration of that many enabled templates: half a kilobyte of code each, and one in twenty a document
/// of 20 kB as well. All stand in the menu itself.
AppConfigItem configuration(std::size_t templates);

/// The same as a document.
std::string document(std::size_t templates);

/// How many placeholders a text has: none, ten, or one in 200 bytes.
enum class Placeholders { none, few, many };

/// A text like source code, with single braces, of about `size` bytes.
std::string text(std::size_t size, Placeholders placeholders);

}  // namespace sprig::bench
