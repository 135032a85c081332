// SPDX-License-Identifier: GPL-3.0-or-later

#include "contract/ApplicationContract.h"

#include <fcntl.h>

#include "ports/linux/Descriptor.h"
#include "ports/terminal/TerminalApplication.h"
#include "support/TestPlatform.h"

namespace sprig::test {
namespace {

class ScriptedWorld {
 public:
  platform::Application& application() { return scripted; }
  platform::MainQueue& queue() { return mainQueue; }

  void answerWith(const std::optional<std::string>& text) {
    scripted.user = [this, text](platform::Alert& alert) {
      if (!alert.window->initialFirstResponder) {
        scripted.press(alert, "\r");
      } else if (text) {
        ScriptedApplication::type(alert, *text);
      } else {
        scripted.press(alert, "\x1b");
      }
    };
  }

 private:
  ports::LinuxMainQueue mainQueue;
  ScriptedApplication scripted{mainQueue};
};

class ScriptedLines : public terminal::LineReader {
 public:
  std::optional<std::string> answer;
  std::optional<std::string> read(const terminal::LineRequest&) override { return answer; }
};

class TerminalWorld {
 public:
  platform::Application& application() { return terminalApplication; }
  platform::MainQueue& queue() { return mainQueue; }
  void answerWith(const std::optional<std::string>& text) { lines.answer = text; }

 private:
  ports::LinuxMainQueue mainQueue;
  ScriptedLines lines;
  ports::Descriptor nowhere{::open("/dev/null", O_WRONLY | O_CLOEXEC)};
  terminal::Screen screen{nowhere.get()};
  terminal::TerminalApplication terminalApplication{mainQueue, lines, screen};
};

using ApplicationWorlds = testing::Types<ScriptedWorld, TerminalWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(Of, ApplicationContract, ApplicationWorlds);

}  // namespace
}  // namespace sprig::test
