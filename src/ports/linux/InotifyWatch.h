// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/inotify.h>
#include <sys/stat.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FileChangeSource.h"
#include "platform/FileURL.h"

namespace sprig::ports {

/// One file or folder under watch, and what the kernel's events about it mean.
///
/// The kernel's mark holds the very file, not its name, and unlike an open descriptor it keeps no volume
/// busy. Watches of one file share one mark.
///
/// Threads:   one at a time.
/// Ownership: the mark belongs to whoever owns the inotify instance, and is removed by it.
class InotifyWatch {
 public:
  /// Watches what is at `location` now, links followed; null when that can't be done.
  static std::unique_ptr<InotifyWatch> start(int inotify, const platform::FileURL& location,
                                             platform::FileEvents events);

  /// The mark, as the events name it.
  int mark() const { return watch; }
  /// Whether what is watched is still what is found at the location.
  bool isAtLocation() const;
  /// Whether this event of its mark is to be reported. Each event is told once, in their order.
  bool isWanted(const inotify_event& event);
  bool wants(platform::FileEvents event) const { return contains(wanted, event); }

 private:
  /// What a new file was when its creation was reported; nothing when it is reported once it is written.
  using Newcomer = std::optional<struct stat>;

  InotifyWatch(platform::FileURL target, platform::FileEvents events)
      : location(std::move(target)), wanted(events) {}

  bool isWantedOfFile(const inotify_event& event);
  bool isWantedOfFolder(const inotify_event& event);
  bool isArrivalWanted(const std::string& name);
  bool isCompletionWanted(const std::string& name);
  void noteDeparture(const inotify_event& event, const std::string& name);
  bool isArrivalOfDeparted(const inotify_event& event, const std::string& name);
  std::optional<struct stat> entry(const std::string& name) const;

  const platform::FileURL location;
  const platform::FileEvents wanted;
  int watch = -1;
  struct stat identity = {};
  /// Until a file is found to have left the location.
  bool isInPlace = true;
  bool isDeletionReported = false;
  /// A folder's files whose writers may not be done.
  std::map<std::string, Newcomer> newcomers;
  /// The rename whose first half was seen last, and the newcomer it moved.
  std::uint32_t departure = 0;
  std::optional<Newcomer> departed;
};

}  // namespace sprig::ports
