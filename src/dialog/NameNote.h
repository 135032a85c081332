// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace sprig::dialog {

/// What the user is told of a file name while it is typed. `problem`: with this name there will hardly be a
/// file.
enum class NoteKind { none, hint, problem };

struct NameNote {
  NoteKind kind = NoteKind::none;
  std::string text;
};

/// The note on a name; white space around it doesn't count, nor does anything that depends on the folder.
///
/// Threads: any. Requires: UTF-8.
NameNote noteOn(std::string_view typed);

}  // namespace sprig::dialog
