// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/Application.h"
#include "platform/SystemLog.h"
#include "ports/desktop/Click.h"
#include "ports/desktop/DialogSession.h"

namespace sprig::desktop {

/// Shows each alert in a process of its own, `sprig-dialog`, so that this one needs no toolkit.
///
/// Threads: main thread. A modal session iterates GLib's default main context, so the main queue and the bus
/// go on. Failure: when a window can't be shown or is lost, the session ends with a code that no button has.
/// The log says why,
///          and what an alert without a question had to say.
class DesktopApplication final : public platform::Application {
 public:
  /// `dialogProgram` is by default the one beside the running program.
  explicit DesktopApplication(platform::SystemLog& systemLog,
                              DialogProgram dialogProgram = {besideThisProgram()})
      : log(systemLog), program(std::move(dialogProgram)) {}

  /// The windows of the sessions to come belong to the file manager's window in which the user clicked.
  void setClick(Click newClick);

  /// Brings the window of the innermost session to the front; `activationToken` (empty for none) lets it take
  /// the focus. Does nothing without a session. A window that hangs is lost a while later, so that the next
  /// session can begin.
  void comeToFront(const std::string& activationToken);

  void setActivationPolicy(platform::ActivationPolicy newPolicy) override { policy = newPolicy; }
  /// New windows come to the front by themselves, so only the one that is there is meant.
  void activate() override { comeToFront({}); }
  void activateIgnoringOtherApps() override { comeToFront({}); }
  int runModal(platform::Alert& alert) override;
  void stopModal(int code) override;

 private:
  static std::string besideThisProgram();
  void run(DialogSession& session, const platform::Alert& alert);
  void logLoss(const platform::Alert& alert, const std::string& reason);

  platform::SystemLog& log;
  const DialogProgram program;
  Click click;
  bool isLate = false;
  /// From the last answer of a user.
  std::string answerToken;
  /// Tokens of clicks that have brought a window to the front.
  std::vector<std::string> usedTokens;
  /// An extension is no program of its own for the user.
  platform::ActivationPolicy policy = platform::ActivationPolicy::accessory;
  std::vector<DialogSession*> sessions;  // the innermost last
};

}  // namespace sprig::desktop
