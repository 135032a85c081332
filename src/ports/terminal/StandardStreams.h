// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace sprig::terminal {

/// Makes sure that descriptors 0 to 2 are open, so that no file of ours is ever opened as one of them. A
/// missing one becomes a stream that has nothing to read and refuses to be written.
void openMissingStandardStreams();

/// Writes all of `data`, unbuffered; false when the stream refuses, with the reason in `errno`.
bool writeFully(int descriptor, std::string_view data);

/// The reason in `errno`, in words.
std::string lastErrorText();

}  // namespace sprig::terminal
