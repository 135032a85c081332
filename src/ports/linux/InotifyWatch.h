#pragma once

#include <sys/inotify.h>
#include <sys/stat.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/FileChangeSource.h"
#include "platform/FileURL.h"
#include "ports/linux/Descriptor.h"

namespace sprig::ports {

/// One file or folder under watch, and what the kernel's events about it mean.
///
/// The kernel's mark holds the very file, not its name, and unlike an open descriptor it keeps no volume
/// busy.
///
/// Threads: one at a time.
class InotifyWatch {
 public:
  /// Watches what is at `location` now, links followed; null when that can't be done.
  static std::unique_ptr<InotifyWatch> on(const platform::FileURL& location, platform::FileEvents events);

  /// Readable while events wait to be taken.
  int descriptor() const { return inotify.get(); }

  /// How many of the events taken from the kernel in one read are wanted; nothing when none waited.
  std::optional<std::size_t> takeEvents();

  /// Has the kernel collect no more; what it has collected can still be taken.
  void stop();

 private:
  InotifyWatch(platform::FileURL target, platform::FileEvents events);

  bool start();
  bool isAtLocation() const;
  bool isWanted(const inotify_event& event);
  bool isWantedOfFile(const inotify_event& event);
  bool isWantedOfFolder(const inotify_event& event);
  bool wants(platform::FileEvents event) const { return contains(wanted, event); }

  const platform::FileURL location;
  const platform::FileEvents wanted;
  Descriptor inotify;
  int watch = -1;
  struct stat identity = {};
  /// Until a file is found to have left the location.
  bool isInPlace = true;
  bool isDeletionReported = false;
  /// A folder's files that appeared under watch: their writers may not be done.
  std::set<std::string, std::less<>> newcomers;
};

}  // namespace sprig::ports
