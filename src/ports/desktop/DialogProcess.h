// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>
#include <glib-unix.h>

#include <chrono>
#include <deque>
#include <optional>
#include <string>

#include "dialog/DialogMessages.h"
#include "dialog/LineBuffer.h"
#include "ports/linux/Descriptor.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

/// The program that draws a dialog.
struct DialogProgram {
  std::string path;
  /// How long it may take to have its window on the screen.
  std::chrono::milliseconds startLimit{20000};
  /// How long it may take to come to the front when it is there.
  std::chrono::milliseconds answerLimit{10000};
};

/// One run of that program, and what it and we have to say to each other.
///
/// Threads:   main thread; its events arrive while GLib's default main context is iterated.
/// Ownership: the process ends with this, whatever state it is in, and is never left as a zombie.
/// Failure:   see `failure`; then there are no further events, and what is sent is lost.
class DialogProcess {
 public:
  explicit DialogProcess(const DialogProgram& program);
  ~DialogProcess();
  DialogProcess(const DialogProcess&) = delete;
  DialogProcess& operator=(const DialogProcess&) = delete;

  void send(const dialog::Command& command);

  /// Sends a change that brings the window to the front. A process that doesn't do so in time is a failed
  /// one, so a dialog that hangs can't keep what comes after it waiting.
  void bringToFront(const dialog::Change& change);

  /// The next event; nothing until there is one.
  std::optional<dialog::Event> takeEvent();

  /// Why nothing more will come from the process; absent while something may.
  const std::optional<std::string>& failure() const { return reason; }

 private:
  struct SourceEnder {
    void operator()(GSource* source) const {
      g_source_destroy(source);
      g_source_unref(source);
    }
  };
  using Source = std::unique_ptr<GSource, SourceEnder>;

  void start(const std::string& path);
  void awaitWindow(std::chrono::milliseconds limit, const char* complaint);
  void awaitAnswer();
  Source watch(GIOCondition condition, GUnixFDSourceFunc call);
  void receive();
  void takeLines();
  void flush();
  void fail(std::string description);

  const std::chrono::milliseconds answerLimit;
  ports::Descriptor connection;
  wire::ObjectPointer<GSubprocess> process;
  Source readable;
  Source writable;
  Source windowTimer;
  const char* windowComplaint = "";
  /// How often the process has yet to say that its window is there; at first, when that opens.
  int answersDue = 1;
  dialog::LineBuffer received;
  std::string unsent;
  std::deque<dialog::Event> events;
  std::optional<std::string> reason;
};

}  // namespace sprig::desktop
