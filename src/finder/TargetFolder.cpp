// SPDX-License-Identifier: GPL-3.0-or-later

#include "finder/TargetFolder.h"

#include "platform/Platform.h"

namespace sprig {

using platform::FileURL;

std::optional<FileURL> firstSelectedFolder() {
  const auto& platform = platform::current();
  const auto selection = platform.finderSyncController.selectedItemURLs();
  if (!selection || selection->empty()) return std::nullopt;
  const auto& first = selection->front();
  const bool isFolder = platform.files.entryKind(first) == platform::EntryKind::directory;
  return isFolder ? first : first.deletingLastPathComponent();
}

std::optional<FileURL> desktopFolder() {
  const auto home = platform::current().users.homeDirectory();
  if (!home) return std::nullopt;
  return home->appendingPath("Desktop");
}

}  // namespace sprig
