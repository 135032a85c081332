// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Application.h"
#include "ports/linux/LinuxMainQueue.h"
#include "ports/terminal/LineReader.h"
#include "ports/terminal/Screen.h"

namespace sprig::terminal {

/// What becomes of a question.
enum class Questions {
  /// The user is asked.
  ask,
  /// What is suggested is confirmed.
  confirm,
};

/// Shows alerts on a terminal. One with a text field is a question, answered with Return or cancelled with
/// Ctrl-C, Ctrl-D or the end of input; any other one is printed, and counts as dismissed.
class TerminalApplication final : public platform::Application {
 public:
  TerminalApplication(ports::LinuxMainQueue& queue, LineReader& reader, const Screen& screen)
      : mainQueue(queue), lines(reader), output(screen) {}

  void setQuestions(Questions way) { questions = way; }

  void setActivationPolicy(platform::ActivationPolicy) override {}
  void activate() override {}
  void activateIgnoringOtherApps() override {}
  int runModal(platform::Alert& alert) override;
  void stopModal(int code) override;

  /// Whether an alert has told the user of trouble.
  bool hasShownAlert() const { return shownAlert; }
  bool hasCancelledQuestion() const { return cancelledQuestion; }

 private:
  /// A modal session: its code once it has ended.
  using Session = std::optional<int>;

  void run(platform::Alert& alert, const Session& session);
  void ask(platform::Alert& alert, platform::TextField& field, const Session& session);
  std::optional<std::string> readLine(const platform::Alert& alert, const platform::TextField& field,
                                      const Session& session);
  void show(const platform::Alert& alert);
  void press(const platform::Button* button);

  ports::LinuxMainQueue& mainQueue;
  LineReader& lines;
  const Screen& output;
  Questions questions = Questions::ask;
  bool shownAlert = false;
  bool cancelledQuestion = false;
  std::vector<Session*> sessions;  // the innermost last
};

}  // namespace sprig::terminal
