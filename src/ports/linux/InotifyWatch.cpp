#include "ports/linux/InotifyWatch.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

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

std::unique_ptr<InotifyWatch> InotifyWatch::on(const FileURL& location, FileEvents events) {
  // What is at the location may be replaced between looking and watching: then once more.
  for (int attempts = 0; attempts < 100; ++attempts) {
    std::unique_ptr<InotifyWatch> watch(new InotifyWatch(location, events));
    if (!watch->start()) return nullptr;
    if (watch->isAtLocation()) return watch;
  }
  return nullptr;
}

InotifyWatch::InotifyWatch(FileURL target, FileEvents events)
    : location(std::move(target)), wanted(events), inotify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

bool InotifyWatch::start() {
  const char* path = location.path().c_str();
  const Descriptor object(retrying([&] { return ::open(path, O_PATH | O_CLOEXEC); }));
  if (!inotify.isOpen() || !object.isOpen() || ::fstat(object.get(), &identity) == -1) return false;
  const auto mask = S_ISDIR(identity.st_mode) ? maskForFolder(wanted) : maskForFile(wanted);
  // By way of the descriptor the watch is on the file that was identified.
  const std::string self = "/proc/self/fd/" + std::to_string(object.get());
  watch = ::inotify_add_watch(inotify.get(), self.c_str(), mask);
  return watch != -1;
}

bool InotifyWatch::isAtLocation() const {
  struct stat now = {};
  return ::stat(location.path().c_str(), &now) == 0 && now.st_dev == identity.st_dev &&
         now.st_ino == identity.st_ino;
}

std::optional<std::size_t> InotifyWatch::takeEvents() {
  alignas(inotify_event) std::array<char, 4096> buffer{};
  const ssize_t size = retrying([&] { return ::read(inotify.get(), buffer.data(), buffer.size()); });
  if (size <= 0) return std::nullopt;
  std::size_t count = 0;
  for (std::size_t position = 0; position < static_cast<std::size_t>(size);) {
    const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + position);
    if (isWanted(event)) ++count;
    position += sizeof event + event.len;
  }
  return count;
}

void InotifyWatch::stop() { ::inotify_rm_watch(inotify.get(), watch); }

bool InotifyWatch::isWanted(const inotify_event& event) {
  // Events were lost, perhaps the ones that count.
  if ((event.mask & IN_Q_OVERFLOW) != 0) return true;
  if ((event.mask & IN_UNMOUNT) != 0) return wants(FileEvents::deleted);
  return S_ISDIR(identity.st_mode) ? isWantedOfFolder(event) : isWantedOfFile(event);
}

bool InotifyWatch::isWantedOfFile(const inotify_event& event) {
  if ((event.mask & IN_MODIFY) != 0) return true;
  if ((event.mask & IN_MOVE_SELF) != 0) {
    isInPlace = isAtLocation();
    return wants(FileEvents::renamed);
  }
  const bool isFileGone = (event.mask & IN_DELETE_SELF) != 0;
  const bool isNameGone = (event.mask & IN_ATTRIB) != 0 && isInPlace && !isAtLocation();
  if (!isFileGone && !isNameGone) return false;
  isInPlace = false;
  return !std::exchange(isDeletionReported, true);
}

bool InotifyWatch::isWantedOfFolder(const inotify_event& event) {
  if ((event.mask & (IN_DELETE_SELF | IN_MOVE_SELF)) != 0) return true;
  const std::string_view name = event.len > 0 ? std::string_view(event.name) : std::string_view();
  if ((event.mask & IN_CLOSE_WRITE) != 0) return newcomers.contains(name);
  if ((event.mask & (IN_CREATE | IN_MOVED_TO)) != 0) {
    if ((event.mask & IN_ISDIR) == 0) newcomers.emplace(name);
    return true;
  }
  if ((event.mask & (IN_DELETE | IN_MOVED_FROM)) == 0) return false;
  if (const auto known = newcomers.find(name); known != newcomers.end()) newcomers.erase(known);
  return true;
}

}  // namespace sprig::ports
