// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <tl/expected.hpp>
#include <vector>

#include "wire/Pointers.h"

namespace sprig::wire {

/// One line of a menu on the bus. Rows stand depth first, a parent before its children.
struct Row {
  enum class Type : std::uint32_t { item = 0, separator = 1, submenu = 2 };

  static constexpr std::int32_t noParent = -1;

  /// Index of the row whose submenu this stands in.
  std::int32_t parent = noParent;
  Type type = Type::item;
  /// What to activate; empty for none.
  std::string action;
  /// As people read it, without mnemonics; cut in the middle when it is longer than a text may be.
  std::string title;
  /// A name of the icon theme; empty for none.
  std::string icon;
  /// What a screen reader says of the icon.
  std::string description;
  bool isEnabled = true;

  friend bool operator==(const Row&, const Row&) = default;
};

/// What a menu may hold. A side that gets more takes it for a fault of the other side.
inline constexpr std::size_t maxLevels = 8;
inline constexpr std::size_t maxRows = 2000;
/// Of each text: what lays menus out can take minutes for one that is much longer.
inline constexpr std::size_t maxTextBytes = 1024;
/// Of the rows as the bus carries them.
inline constexpr std::size_t maxBytes = 1024 * 1024;

/// The rows as GLib lays them out in memory, and the bytes of that, as which they are on the bus: GLib makes
/// an object of each value of a message, at both ends, but one only of all bytes.
inline constexpr const char* rowsType = "a(iussssb)";
inline constexpr const char* rowBytesType = "ay";

/// How many bytes a row takes of `maxBytes`, at most.
std::size_t byteSize(const Row& row);

/// The rows as the bus carries them, bytes, not floating. Failure: a text that names the first row that is
/// not as `Row` says (texts have to be UTF-8 without NUL), or the bound that is exceeded. Threads: any.
tl::expected<VariantPointer, std::string> rowsToVariant(const std::vector<Row>& rows);

/// The other way; `variant` is of any type and stays the caller's. The same failures. Threads: any.
tl::expected<std::vector<Row>, std::string> rowsFromVariant(GVariant* variant);

}  // namespace sprig::wire
