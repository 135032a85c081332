// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/TemplateTextEdit.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>

#include "platform/Platform.h"
#include "ports/linux/Descriptor.h"
#include "ports/linux/retrying.h"
#include "ports/terminal/StandardStreams.h"
#include "translation/translated.h"

namespace sprig::terminal {

namespace {

/// A private file whose name tells editors what it holds.
class TemporaryText {
 public:
  TemporaryText() {
    std::error_code ignored;
    path = (std::filesystem::temp_directory_path(ignored) / "sprig-XXXXXX.json").string();
    file = ports::Descriptor(::mkostemps(path.data(), 5, O_CLOEXEC));
    if (!file.isOpen()) path.clear();
  }
  ~TemporaryText() {
    if (!path.empty()) ::unlink(path.c_str());
  }
  TemporaryText(const TemporaryText&) = delete;
  TemporaryText& operator=(const TemporaryText&) = delete;

  bool write(const std::string& text) const { return file.isOpen() && writeFully(file.get(), text); }
  const std::string& location() const { return path; }

 private:
  std::string path;
  ports::Descriptor file;
};

/// Whether the editor ended well. What the variables hold is a command of the shell.
bool runEditor(const std::string& path) {
  constexpr const char* script = R"(eval "${VISUAL:-${EDITOR:-$(command -v editor || echo vi)}} \"\$1\"")";
  std::array<std::string, 5> words = {"sh", "-c", script, "sh", path};
  const std::array<char*, 6> arguments = {words[0].data(), words[1].data(), words[2].data(),
                                          words[3].data(), words[4].data(), nullptr};
  pid_t child = 0;
  if (::posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments.data(), ::environ) != 0) return false;
  int status = 0;
  if (ports::retrying([&] { return ::waitpid(child, &status, 0); }) == -1) return false;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

std::optional<std::string> editedText(const std::string& text, std::string& problem) {
  const TemporaryText file;
  if (!file.write(text + "\n")) {
    problem = translated("can't write a temporary file: %1%", {lastErrorText()});
    return std::nullopt;
  }
  if (!runEditor(file.location())) {
    problem = translated("the editor failed, so nothing was changed");
    return std::nullopt;
  }
  auto edited = platform::current().files.contentsOfFile(platform::FileURL(file.location()));
  if (!edited) problem = edited.error().description;
  if (!edited) return std::nullopt;
  while (edited->ends_with('\n')) edited->pop_back();
  return std::move(*edited);
}

}  // namespace sprig::terminal
