// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "platform/FileURL.h"

namespace sprig {

/// What a desktop file offers as a template, as the "Create New" menu of KDE reads it.
struct DesktopEntry {
  /// In the user's language, without the dots that such names end in; empty if there is none.
  std::string name;
  /// The file that it links to; absent if it is something else than a link, or leads elsewhere.
  std::optional<platform::FileURL> target;
};

/// Nothing for a file that is no desktop file, by its name.
///
/// Threads: any. Failure: one that can't be read has no target.
std::optional<DesktopEntry> desktopEntryIn(const platform::FileURL& file);

}  // namespace sprig
