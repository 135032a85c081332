// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/LinuxUserDatabase.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <vector>

namespace sprig::ports {

using platform::FileURL;

namespace {

/// Records are a few hundred bytes; one that does not fit into this is not worth the memory.
constexpr std::size_t largestRecord = std::size_t{1} << 20;

std::string_view text(const char* field) { return field == nullptr ? "" : field; }

}  // namespace

std::optional<LinuxUserDatabase::Entry> LinuxUserDatabase::entry() const {
  const auto user = ::getuid();
  const std::lock_guard guard(lock);
  if (!known || knownUser != user) {
    known = entryOf(user);
    knownUser = user;
  }
  return known;
}

std::optional<LinuxUserDatabase::Entry> LinuxUserDatabase::entryOf(uid_t user) {
  std::vector<char> strings(1024);
  for (;;) {
    passwd record = {};
    passwd* found = nullptr;
    const int failure = ::getpwuid_r(user, &record, strings.data(), strings.size(), &found);
    if (failure == 0) return found == nullptr ? std::nullopt : entry(record);
    if (failure == ERANGE && strings.size() < largestRecord) {
      strings.resize(strings.size() * 4);
    } else if (failure != EINTR) {
      return std::nullopt;
    }
  }
}

std::optional<LinuxUserDatabase::Entry> LinuxUserDatabase::entry(const passwd& record) {
  const auto home = text(record.pw_dir);
  if (!home.starts_with('/')) return std::nullopt;
  const auto login = text(record.pw_name);
  const auto comment = text(record.pw_gecos);
  const auto fullName = comment.substr(0, comment.find(','));
  return Entry{FileURL(std::string(home)), std::string(login),
               std::string(fullName.empty() ? login : fullName)};
}

std::optional<FileURL> LinuxUserDatabase::homeDirectory() const {
  auto found = entry();
  if (!found) return std::nullopt;
  return std::move(found->home);
}

std::string LinuxUserDatabase::fullUserName() const {
  auto found = entry();
  return found ? std::move(found->fullName) : "";
}

}  // namespace sprig::ports
