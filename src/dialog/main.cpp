// SPDX-License-Identifier: GPL-3.0-or-later

#include <glib-unix.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "dialog/ColorScheme.h"
#include "dialog/DialogMessages.h"
#include "dialog/DialogWindow.h"
#include "dialog/LineBuffer.h"
#include "dialog/drawInSoftware.h"
#include "version/answerVersion.h"

namespace sprig::dialog {

namespace {

/// A fault of whoever started this program; told on standard error, where the session's log takes it.
struct Fault {
  std::string description;
};

/// Standard input.
class Input {
 public:
  /// Waits for bytes and takes them; false at the end.
  bool read() {
    std::array<char, 4096> bytes{};
    ssize_t count = -1;
    do {
      count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    } while (count == -1 && errno == EINTR);
    if (count <= 0) return false;
    if (!buffer.add({bytes.data(), static_cast<std::size_t>(count)})) throw Fault{"a command is too long"};
    return true;
  }

  /// The next whole command; nothing until there is one.
  std::optional<Command> takeCommand() {
    const auto line = buffer.takeLine();
    if (!line) return std::nullopt;
    auto command = decodeCommand(*line);
    if (!command) throw Fault{"a command can't be understood: " + command.error()};
    return *std::move(command);
  }

 private:
  LineBuffer buffer;
};

/// The program's run: one window, from the command that shows it to the end.
class Run {
 public:
  /// Nothing when the input ends before anything is to be shown.
  std::optional<Show> waitForShow() {
    while (true) {
      if (auto command = input.takeCommand()) {
        if (auto* show = std::get_if<Show>(&*command)) return std::move(*show);
        if (std::holds_alternative<Close>(*command)) return std::nullopt;
        throw Fault{"nothing is shown yet that could change"};
      }
      if (!input.read()) return std::nullopt;
    }
  }

  void show(const Show& show) {
    window.emplace(show, [this](const Event& event) { report(event); });
    take();
    g_unix_fd_add(STDIN_FILENO, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), readable, this);
    while (!isOver) g_main_context_iteration(nullptr, TRUE);
    window.reset();
    // The window is gone from the screen when the program is.
    gdk_display_sync(gdk_display_get_default());
    if (fault) throw Fault(*fault);
  }

 private:
  /// No exception may cross GLib's frames.
  static gboolean readable(int, GIOCondition, void* run) {
    auto& self = *static_cast<Run*>(run);
    try {
      if (!self.input.read()) self.isOver = true;
      self.take();
    } catch (const Fault& fault) {
      self.fault = fault;
      self.isOver = true;
    }
    return self.isOver ? G_SOURCE_REMOVE : G_SOURCE_CONTINUE;
  }

  void take() {
    while (const auto command = input.takeCommand()) {
      if (const auto* change = std::get_if<Change>(&*command)) {
        window->apply(*change);
      } else if (std::holds_alternative<Close>(*command)) {
        isOver = true;
      } else {
        throw Fault{"a second window can't be shown"};
      }
    }
  }

  void report(const Event& event) {
    const auto line = encode(event);
    // Nobody who listens: nobody who would end the window either.
    if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size() || std::fflush(stdout) != 0)
      isOver = true;
  }

  Input input;
  std::optional<DialogWindow> window;
  std::optional<Fault> fault;
  bool isOver = false;
};

void run() {
  Run run;
  const auto show = run.waitForShow();
  if (!show) return;
  drawInSoftware();
  // What window managers and compositors know our windows by, and what people are told.
  g_set_prgname("com.kestrel.Sprig");
  g_set_application_name("Sprig");
  ColorScheme colorScheme;
  if (gtk_init_check() == FALSE) throw Fault{"there is no display"};
  colorScheme.follow();
  run.show(*show);
}

}  // namespace

}  // namespace sprig::dialog

int main(int argc, char** argv) {
  if (sprig::answerVersion("sprig-dialog", argc, argv)) return EXIT_SUCCESS;
  std::signal(SIGPIPE, SIG_IGN);
  try {
    sprig::dialog::run();
  } catch (const sprig::dialog::Fault& fault) {
    std::fprintf(stderr, "sprig-dialog: %s\n", fault.description.c_str());
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
