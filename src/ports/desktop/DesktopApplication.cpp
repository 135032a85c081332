// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DesktopApplication.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace sprig::desktop {

namespace {

bool isQuestion(const platform::Alert& alert) { return alert.accessoryView != nullptr; }

std::string onOneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace

std::string DesktopApplication::besideThisProgram() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / "sprig-dialog";
}

/// A click that has waited for the end of a session is older than what the user did in that session's window:
/// a window manager would not give the focus to a window because of it.
void DesktopApplication::setClick(Click newClick) {
  click = std::move(newClick);
  isLate = std::erase(usedTokens, click.activationToken) != 0;
  if (isLate) click.activationToken = answerToken;
}

void DesktopApplication::comeToFront(const std::string& activationToken) {
  if (sessions.empty()) return;
  if (!activationToken.empty()) usedTokens.push_back(activationToken);
  sessions.back()->comeToFront(activationToken);
}

int DesktopApplication::runModal(platform::Alert& alert) {
  DialogSession session(alert, program, {click, policy, isLate});
  sessions.push_back(&session);
  run(session, alert);
  sessions.pop_back();
  // A token is good for one window; the next one is there because of what the user did in this one.
  click.activationToken = answerToken = session.activationToken();
  return *session.code();
}

void DesktopApplication::stopModal(int code) {
  if (!sessions.empty()) sessions.back()->stop(code);
}

/// Whatever happens in the window of an outer session waits until that one is the innermost again.
void DesktopApplication::run(DialogSession& session, const platform::Alert& alert) {
  while (!session.code()) {
    if (!session.performNext()) {
      if (const auto& reason = session.failure()) {
        logLoss(alert, *reason);
        usedTokens.clear();  // for nothing, so they are still good
        return session.stop(DialogSession::noButtonCode);
      }
      g_main_context_iteration(nullptr, TRUE);
    }
    for (auto* shown : sessions) shown->sendChanges();
  }
}

void DesktopApplication::logLoss(const platform::Alert& alert, const std::string& reason) {
  const std::string what = isQuestion(alert) ? "the name of a new file" : "a message";
  log.log("[SprigFinder] No dialog for " + what + ": " + onOneLine(reason));
  // Nobody else tells the user.
  if (!isQuestion(alert))
    log.log("[SprigFinder] " + onOneLine(alert.messageText + " " + alert.informativeText));
}

}  // namespace sprig::desktop
