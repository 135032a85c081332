// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/CreationJournal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "ports/linux/Descriptor.h"
#include "ports/linux/LockFile.h"
#include "ports/linux/retrying.h"
#include "text/percentDecoded.h"

namespace sprig::ports {

using platform::FileURL;

namespace {

constexpr const char* journalName = "creations";
constexpr const char* newJournalName = "creations.new";
constexpr const char* lockName = "creations.lock";
/// More than the longest journal that this program writes.
constexpr std::size_t maxSize = std::size_t{1} << 20U;
/// A time beyond the year 2200 is nonsense, and more than a clock of nanoseconds can count.
constexpr std::int64_t maxSeconds = 7'300'000'000;
constexpr mode_t privateFile = 0600;

/// A path without bytes that would end or break a line.
std::string escaped(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= ' ' && byte != '%') {
      result += character;
    } else {
      result.append({'%', digits[byte >> 4U], digits[byte & 0xFU]});
    }
  }
  return result;
}

/// Takes a number and the space behind it off the front.
template <typename Number>
bool takeNumber(std::string_view& line, Number& number) {
  const auto [end, failure] = std::from_chars(line.data(), line.data() + line.size(), number);
  if (failure != std::errc() || end == line.data() + line.size() || *end != ' ') return false;
  line.remove_prefix(static_cast<std::size_t>(end - line.data()) + 1);
  return true;
}

std::string lineOf(const Creation& creation) {
  const auto& identity = creation.identity;
  return std::to_string(identity.inode) + ' ' + std::to_string(identity.size) + ' ' +
         std::to_string(identity.modifiedSeconds) + ' ' + std::to_string(identity.modifiedNanoseconds) + ' ' +
         escaped(creation.file.path()) + '\n';
}

std::optional<Creation> creationIn(std::string_view line) {
  FileIdentity identity;
  const bool hasNumbers = takeNumber(line, identity.inode) && takeNumber(line, identity.size) &&
                          takeNumber(line, identity.modifiedSeconds) &&
                          takeNumber(line, identity.modifiedNanoseconds);
  const auto path = hasNumbers ? text::percentDecoded(line) : std::nullopt;
  const bool hasTime = identity.modifiedSeconds >= 0 && identity.modifiedSeconds <= maxSeconds;
  if (!path || !path->starts_with('/') || path->find('\0') != std::string::npos || !hasTime)
    return std::nullopt;
  return Creation{FileURL(*path), identity};
}

/// The beginning of a file, as far as a journal may reach; empty when it can't be read.
std::string contentOf(const std::string& path) {
  const Descriptor file(retrying(
      [&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY); }));
  struct stat status = {};
  if (!file.isOpen() || ::fstat(file.get(), &status) == -1 || !S_ISREG(status.st_mode)) return {};
  std::string content;
  std::array<char, 16384> buffer = {};
  while (content.size() < maxSize) {
    const auto count = retrying([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
    if (count <= 0) break;
    content.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return content;
}

}  // namespace

std::vector<Creation> CreationJournal::read() const {
  const auto content = contentOf(location.appendingPath(journalName).path());
  std::vector<Creation> list;
  std::string_view rest = content;
  // What follows the last line break was cut off.
  for (auto end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    if (auto creation = creationIn(rest.substr(0, end))) list.push_back(std::move(*creation));
    rest.remove_prefix(end + 1);
  }
  return list;
}

// The file is not flushed to the disk: to lose it in a power failure is better than to wait for it each time.
void CreationJournal::write(const std::vector<Creation>& list) const {
  std::string content;
  for (const auto& creation : list) content += lineOf(creation);
  const auto path = location.appendingPath(newJournalName).path();
  ::unlink(path.c_str());
  const Descriptor file(retrying([&] {
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, privateFile);
  }));
  if (!file.isOpen()) return;
  const auto written = retrying([&] { return ::write(file.get(), content.data(), content.size()); });
  const bool isWhole = written >= 0 && static_cast<std::size_t>(written) == content.size();
  if (isWhole && ::rename(path.c_str(), location.appendingPath(journalName).path().c_str()) == 0) return;
  ::unlink(path.c_str());
}

template <typename Change>
void CreationJournal::change(Change apply) const {
  const LockFile lock(location.appendingPath(lockName));
  if (!lock.isHeld()) return;
  auto list = read();
  apply(list);
  if (list.size() > maxCreations) {
    list.erase(list.begin(), list.end() - static_cast<std::ptrdiff_t>(maxCreations));
  }
  write(list);
}

void CreationJournal::created(const FileURL& file) {
  auto creation = Creation::of(file);
  if (!creation) return;
  change([&](std::vector<Creation>& list) { list.push_back(std::move(*creation)); });
}

std::vector<Creation> CreationJournal::creations() const {
  auto list = read();
  std::reverse(list.begin(), list.end());
  return list;
}

void CreationJournal::forget(const Creation& creation) {
  change([&](std::vector<Creation>& list) { std::erase(list, creation); });
}

}  // namespace sprig::ports
