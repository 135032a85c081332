// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/moveToTrash.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>

#include "ports/linux/retrying.h"

namespace sprig::terminal {

namespace {

/// What a child does with its streams: nothing.
class SilentStreams {
 public:
  SilentStreams() {
    ::posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    }
  }
  ~SilentStreams() { ::posix_spawn_file_actions_destroy(&actions); }
  SilentStreams(const SilentStreams&) = delete;
  SilentStreams& operator=(const SilentStreams&) = delete;

  const posix_spawn_file_actions_t* get() const { return &actions; }

 private:
  posix_spawn_file_actions_t actions = {};
};

}  // namespace

bool moveToTrash(const platform::FileURL& file) {
  std::array<std::string, 3> words = {"gio", "trash", file.path()};
  const std::array<char*, 4> arguments = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  const SilentStreams streams;
  pid_t child = 0;
  if (::posix_spawnp(&child, arguments[0], streams.get(), nullptr, arguments.data(), ::environ) != 0)
    return false;
  int status = 0;
  if (ports::retrying([&] { return ::waitpid(child, &status, 0); }) == -1) return false;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace sprig::terminal
