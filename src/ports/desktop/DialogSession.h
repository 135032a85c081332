// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "platform/Alert.h"
#include "platform/Application.h"
#include "ports/desktop/Click.h"
#include "ports/desktop/DialogProcess.h"

namespace sprig::desktop {

/// The modal session of one alert: the alert's model on this side, its window in a process of its own.
///
/// Threads:   main thread.
/// Ownership: the alert outlives this. The window goes with it.
class DialogSession {
 public:
  /// Ends a session in which no button was pressed.
  static constexpr int noButtonCode = -1;

  /// How the window is opened.
  struct Opening {
    /// What it comes from.
    const Click& click;
    platform::ActivationPolicy policy = platform::ActivationPolicy::accessory;
    /// The user has answered another window since the click.
    bool isLate = false;
  };

  DialogSession(platform::Alert& shownAlert, const DialogProgram& program, const Opening& opening);
  ~DialogSession();
  DialogSession(const DialogSession&) = delete;
  DialogSession& operator=(const DialogSession&) = delete;

  /// Absent while the session goes on.
  const std::optional<int>& code() const { return endCode; }
  /// Does nothing in a session that has ended.
  void stop(int code);

  /// Does what the next thing that happened in the window asks for; false when nothing has happened.
  bool performNext();
  /// Has the window follow the model.
  void sendChanges();
  void comeToFront(const std::string& activationToken);

  /// What lets the next window take the focus, from the last thing the user did in this one; empty for none.
  const std::string& activationToken() const { return token; }

  /// Why the window was lost; absent while it is there.
  const std::optional<std::string>& failure() const { return process.failure(); }

 private:
  /// What the window was told last.
  struct State {
    std::string text;
    std::optional<platform::TextRange> selection;
    bool isInFront = true;
  };

  void perform(const dialog::Event& event);
  void press(const platform::Button& button);
  void close();
  State currentState() const;

  platform::Alert& alert;
  platform::TextField* const field;
  std::optional<int> endCode;
  State lastSent;
  std::string token;
  DialogProcess process;
};

}  // namespace sprig::desktop
