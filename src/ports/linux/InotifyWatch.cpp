// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/InotifyWatch.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

#include "ports/linux/Descriptor.h"
#include "ports/linux/retrying.h"

namespace sprig::ports {

using platform::FileEvents;
using platform::FileURL;

namespace {

std::uint32_t maskForFile(FileEvents events) {
  std::uint32_t mask = 0;
  if (contains(events, FileEvents::write)) mask |= IN_MODIFY;
  // A removed name changes the link count, an attribute. The deletion proper comes only when nobody has the
  // file open any more, and a move must be known to tell the two apart.
  if (contains(events, FileEvents::deleted)) mask |= IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
  if (contains(events, FileEvents::renamed)) mask |= IN_MOVE_SELF;
  return mask;
}

std::uint32_t maskForFolder(FileEvents events) {
  std::uint32_t mask = IN_ONLYDIR;
  // A file appears before it has its content, so its writer's end counts as well.
  if (contains(events, FileEvents::write)) mask |= IN_CREATE | IN_DELETE | IN_MOVE | IN_CLOSE_WRITE;
  if (contains(events, FileEvents::deleted)) mask |= IN_DELETE_SELF;
  if (contains(events, FileEvents::renamed)) mask |= IN_MOVE_SELF;
  return mask;
}

}  // namespace

std::unique_ptr<InotifyWatch> InotifyWatch::start(int inotify, const FileURL& location, FileEvents events) {
  const char* path = location.path().c_str();
  const Descriptor object(retrying([&] { return ::open(path, O_PATH | O_CLOEXEC); }));
  std::unique_ptr<InotifyWatch> result(new InotifyWatch(location, events));
  if (!object.isOpen() || ::fstat(object.get(), &result->identity) == -1) return nullptr;
  const auto mask = S_ISDIR(result->identity.st_mode) ? maskForFolder(events) : maskForFile(events);
  // By way of the descriptor the watch is on the file that was identified.
  const std::string self = "/proc/self/fd/" + std::to_string(object.get());
  result->watch = ::inotify_add_watch(inotify, self.c_str(), mask | IN_MASK_ADD);
  return result->watch == -1 ? nullptr : std::move(result);
}

bool InotifyWatch::isAtLocation() const {
  struct stat now = {};
  return ::stat(location.path().c_str(), &now) == 0 && now.st_dev == identity.st_dev &&
         now.st_ino == identity.st_ino;
}

bool InotifyWatch::isWanted(const inotify_event& event) {
  if ((event.mask & IN_UNMOUNT) != 0) return wants(FileEvents::deleted);
  return S_ISDIR(identity.st_mode) ? isWantedOfFolder(event) : isWantedOfFile(event);
}

bool InotifyWatch::isWantedOfFile(const inotify_event& event) {
  if ((event.mask & IN_MODIFY) != 0) return wants(FileEvents::write);
  if ((event.mask & IN_MOVE_SELF) != 0) {
    // The end of the rename that brought it here may come after the watch was made.
    const bool wasInPlace = std::exchange(isInPlace, isAtLocation());
    return wants(FileEvents::renamed) && !(wasInPlace && isInPlace);
  }
  const bool isFileGone = (event.mask & IN_DELETE_SELF) != 0;
  const bool isNameGone = (event.mask & IN_ATTRIB) != 0 && isInPlace && !isAtLocation();
  if (!wants(FileEvents::deleted) || (!isFileGone && !isNameGone)) return false;
  isInPlace = false;
  return !std::exchange(isDeletionReported, true);
}

bool InotifyWatch::isWantedOfFolder(const inotify_event& event) {
  if ((event.mask & IN_DELETE_SELF) != 0) return wants(FileEvents::deleted);
  if ((event.mask & IN_MOVE_SELF) != 0) return wants(FileEvents::renamed);
  if (!wants(FileEvents::write) || event.len == 0) return false;
  const std::string name = event.name;
  if ((event.mask & IN_ISDIR) == 0) {
    if ((event.mask & IN_CREATE) != 0) return isArrivalWanted(name);
    if ((event.mask & IN_CLOSE_WRITE) != 0) return isCompletionWanted(name);
  }
  if ((event.mask & IN_MOVED_TO) != 0) return !isArrivalOfDeparted(event, name);
  if ((event.mask & IN_MOVED_FROM) != 0) noteDeparture(event, name);
  if ((event.mask & IN_DELETE) != 0) newcomers.erase(name);
  return (event.mask & (IN_CREATE | IN_DELETE | IN_MOVED_FROM)) != 0;
}

/// A file appears before it has its content. One that has some may be complete, such as one that was linked.
bool InotifyWatch::isArrivalWanted(const std::string& name) {
  const auto found = entry(name);
  if (found && (!S_ISREG(found->st_mode) || found->st_nlink > 1)) return true;
  const bool isWritten = found && found->st_size > 0;
  newcomers[name] = isWritten ? found : std::nullopt;
  return isWritten;
}

bool InotifyWatch::isCompletionWanted(const std::string& name) {
  const auto known = newcomers.find(name);
  if (known == newcomers.end()) return false;
  const auto reported = known->second;
  newcomers.erase(known);
  const auto now = entry(name);
  if (!reported) return true;
  return now && (now->st_ino != reported->st_ino || now->st_size != reported->st_size ||
                 now->st_mtim.tv_sec != reported->st_mtim.tv_sec ||
                 now->st_mtim.tv_nsec != reported->st_mtim.tv_nsec);
}

void InotifyWatch::noteDeparture(const inotify_event& event, const std::string& name) {
  departure = event.cookie;
  departed.reset();
  if (auto known = newcomers.extract(name)) departed = known.mapped();
}

bool InotifyWatch::isArrivalOfDeparted(const inotify_event& event, const std::string& name) {
  newcomers.erase(name);
  if (event.cookie != departure) return false;
  if (departed) newcomers[name] = *departed;
  return true;
}

std::optional<struct stat> InotifyWatch::entry(const std::string& name) const {
  struct stat found = {};
  if (::lstat((location.path() + "/" + name).c_str(), &found) == -1) return std::nullopt;
  return found;
}

}  // namespace sprig::ports
