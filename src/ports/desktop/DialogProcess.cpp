// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DialogProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <system_error>
#include <utility>

#include "ports/linux/retrying.h"

namespace sprig::desktop {

namespace {

/// How long a process may take to leave once it was told to.
constexpr int endLimit = 500;  // milliseconds

std::string describe(int error) { return std::generic_category().message(error); }

}  // namespace

DialogProcess::DialogProcess(const DialogProgram& program) : answerLimit(program.answerLimit) {
  start(program.path);
  if (reason) return;
  readable = watch(G_IO_IN, [](int, GIOCondition, void* self) -> gboolean {
    static_cast<DialogProcess*>(self)->receive();
    return G_SOURCE_CONTINUE;
  });
  awaitWindow(program.startLimit, "it shows no window");
}

DialogProcess::~DialogProcess() {
  if (!process) return;
  if (connection.isOpen()) {
    if (unsent.empty()) send(dialog::Close{});
    ::shutdown(connection.get(), SHUT_WR);
    // The other end closes when the process has ended, and its window with it.
    pollfd ended = {connection.get(), 0, 0};
    ports::retrying([&] { return ::poll(&ended, 1, endLimit); });
  }
  g_subprocess_force_exit(process.get());
}

void DialogProcess::send(const dialog::Command& command) {
  if (reason) return;
  unsent += dialog::encode(command);
  flush();
}

void DialogProcess::bringToFront(const dialog::Change& change) {
  send(change);
  if (reason) return;
  ++answersDue;
  if (!windowTimer) awaitAnswer();
}

std::optional<dialog::Event> DialogProcess::takeEvent() {
  if (events.empty()) return std::nullopt;
  auto event = std::move(events.front());
  events.pop_front();
  return event;
}

/// One socket stands for both pipes: unlike with a pipe, writing to a process that has gone does no harm.
void DialogProcess::start(const std::string& path) {
  std::array<int, 2> ends = {-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    return fail("no socket for it: " + describe(errno));
  }
  connection = ports::Descriptor(ends[0]);
  ::fcntl(connection.get(), F_SETFL, O_NONBLOCK);
  const wire::ObjectPointer<GSubprocessLauncher> launcher(g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_NONE));
  g_subprocess_launcher_take_stdout_fd(launcher.get(), ::fcntl(ends[1], F_DUPFD_CLOEXEC, 0));
  g_subprocess_launcher_take_stdin_fd(launcher.get(), ends[1]);
  // Tokens are told in commands; the ones in our environment were for the start of this process.
  g_subprocess_launcher_unsetenv(launcher.get(), "XDG_ACTIVATION_TOKEN");
  g_subprocess_launcher_unsetenv(launcher.get(), "DESKTOP_STARTUP_ID");
  const std::array<const char*, 2> arguments = {path.c_str(), nullptr};
  GError* error = nullptr;
  process.reset(g_subprocess_launcher_spawnv(launcher.get(), arguments.data(), &error));
  if (!process) {
    const wire::ErrorPointer owned(error);
    fail(owned->message);
  }
}

/// Fails with the complaint unless the process says in time that its window is there.
void DialogProcess::awaitWindow(std::chrono::milliseconds limit, const char* complaint) {
  windowComplaint = complaint;
  windowTimer.reset(g_timeout_source_new(static_cast<guint>(limit.count())));
  const auto isOver = [](void* waiting) -> gboolean {
    auto& self = *static_cast<DialogProcess*>(waiting);
    self.fail(self.windowComplaint);
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(windowTimer.get(), isOver, this, nullptr);
  g_source_attach(windowTimer.get(), nullptr);
}

void DialogProcess::awaitAnswer() { awaitWindow(answerLimit, "it has stopped answering"); }

/// Calls `call` with this whenever the connection is ready, until the source is destroyed.
DialogProcess::Source DialogProcess::watch(GIOCondition condition, GUnixFDSourceFunc call) {
  Source source(g_unix_fd_source_new(connection.get(), condition));
  // NOLINTNEXTLINE(clang-diagnostic-cast-function-type): the type of the callback depends on the kind of
  // source.
  g_source_set_callback(source.get(), G_SOURCE_FUNC(call), this, nullptr);
  g_source_attach(source.get(), nullptr);
  return source;
}

void DialogProcess::receive() {
  std::array<char, 4096> bytes{};
  const auto count = ports::retrying([&] { return ::recv(connection.get(), bytes.data(), bytes.size(), 0); });
  if (count == -1 && errno == EAGAIN) return;
  if (count <= 0) return fail("it has ended by itself");
  if (!received.add({bytes.data(), static_cast<std::size_t>(count)})) return fail("it says too much");
  takeLines();
}

void DialogProcess::takeLines() {
  while (const auto line = received.takeLine()) {
    auto event = dialog::decodeEvent(*line);
    if (!event) return fail("it can't be understood: " + event.error());
    if (event->kind == dialog::EventKind::shown) {
      windowTimer.reset();
      if (--answersDue > 0) awaitAnswer();
    } else {
      events.push_back(*std::move(event));
    }
  }
}

/// Sends what fits, and the rest when there is room again.
void DialogProcess::flush() {
  const auto sent = ports::retrying(
      [&] { return ::send(connection.get(), unsent.data(), unsent.size(), MSG_NOSIGNAL | MSG_DONTWAIT); });
  if (sent > 0) unsent.erase(0, static_cast<std::size_t>(sent));
  if (unsent.empty()) {
    writable.reset();
  } else if (sent == -1 && errno != EAGAIN) {
    // What it may have said before it went is read all the same.
    unsent.clear();
    writable.reset();
  } else if (!writable) {
    writable = watch(G_IO_OUT, [](int, GIOCondition, void* self) -> gboolean {
      static_cast<DialogProcess*>(self)->flush();
      return G_SOURCE_CONTINUE;
    });
  }
}

void DialogProcess::fail(std::string description) {
  reason = std::move(description);
  readable.reset();
  writable.reset();
  windowTimer.reset();
}

}  // namespace sprig::desktop
