// SPDX-License-Identifier: GPL-3.0-or-later

#include "contract/Process.h"

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <utility>

namespace sprig::test {

namespace {

constexpr uid_t nobody = 65534;

void set(const std::string& name, const std::optional<std::string>& value) {
  if (value) {
    ::setenv(name.c_str(), value->c_str(), 1);
  } else {
    ::unsetenv(name.c_str());
  }
}

}  // namespace

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

mode_t modeOf(const platform::FileURL& location) {
  struct stat status = {};
  ::lstat(location.path().c_str(), &status);
  return status.st_mode & 07777U;
}

bool asOrdinaryUser(const std::function<bool()>& question) {
  if (::geteuid() != 0) return question();
  const pid_t child = ::fork();
  if (child == 0) {
    const bool isOrdinary = ::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0;
    ::_exit(isOrdinary && question() ? 0 : 1);
  }
  int status = -1;
  return child > 0 && ::waitpid(child, &status, 0) == child && status == 0;
}

// The environment is not changed meanwhile. NOLINTNEXTLINE(concurrency-mt-unsafe)
bool runsInShell(const std::string& command) { return std::system(command.c_str()) == 0; }

ScopedVariable::ScopedVariable(std::string variableName, const std::optional<std::string>& value)
    : name(std::move(variableName)) {
  if (const char* text = std::getenv(name.c_str())) previous = text;
  set(name, value);
}

ScopedVariable::~ScopedVariable() { set(name, previous); }

}  // namespace sprig::test
