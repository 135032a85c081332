// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DesktopApplication.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "contract/ApplicationContract.h"
#include "contract/Process.h"
#include "create/FileCreator.h"
#include "create/PromptDialog.h"
#include "ports/desktop/GLibMainQueue.h"
#include "support/Eventually.h"
#include "support/TestPlatform.h"

namespace sprig::test {
namespace {

using desktop::DesktopApplication;
using dialog::EventKind;
using Name = std::optional<std::string>;

const std::string shown = R"(echo '{"event":"shown"}';)";
const std::string untilTheEnd = "cat >/dev/null";

std::string saying(const dialog::Event& event) { return "cat <<'END'\n" + dialog::encode(event) + "END\n"; }

/// The desktop's application with a shell script in the place of the dialogs' program.
struct ScriptedDialogs {
  TemporaryFolder folder;
  platform::FileURL script = folder / "dialog";
  RecordingSystemLog log;
  desktop::GLibMainQueue mainQueue;
  DesktopApplication desktopApplication{log, {script.path(), std::chrono::milliseconds(10000)}};

  platform::Application& application() { return desktopApplication; }
  platform::MainQueue& queue() { return mainQueue; }

  /// For the dialogs from now on; a shell reads on in the script that it began with.
  void play(const std::string& commands) {
    const auto next = script.path() + ".next";
    std::ofstream(next) << "#!/bin/sh\n" << commands << "\n";
    ::chmod(next.c_str(), 0755);
    std::filesystem::rename(next, script.path());
  }

  void answerWith(const Name& text) {
    const auto answer =
        text ? saying({EventKind::field, 0, *text}) : saying({EventKind::button, 1, "suggested.md"});
    play("read -r show;" + shown + "case $show in *'\"field\"'*)\n" + answer + ";; *)\n" +
         saying({EventKind::button, 0, ""}) + ";; esac\n" + untilTheEnd);
  }

  /// Has the dialog take `count` commands before it says `event`.
  void answerAfter(int count, const dialog::Event& event) {
    play(shown + "for i in $(seq " + std::to_string(count) +
         "); do read -r line; printf '%s\\n' \"$line\"; done >'" + script.path() + ".commands'\n" +
         saying(event) + untilTheEnd);
  }

  std::vector<dialog::Command> commands() const {
    std::ifstream file(script.path() + ".commands");
    std::vector<dialog::Command> result;
    for (std::string line; std::getline(file, line);) result.push_back(dialog::decodeCommand(line).value());
    return result;
  }
};

using DesktopWorlds = testing::Types<ScriptedDialogs>;
INSTANTIATE_TYPED_TEST_SUITE_P(OfTheDesktop, ApplicationContract, DesktopWorlds);

/// The product's own windows in those dialogs.
struct Dialogs : testing::Test, ScriptedDialogs {
  TestPlatform platform;
  platform::Platform services{
      platform.files,  platform.users,       platform.process,   platform.clock,     log,
      mainQueue,       platform.fileChanges, platform.volumes,   platform.workspace, platform.creations,
      platform.images, desktopApplication,   platform.controller};
  platform::PlatformScope scope{services};

  static Name ask(const std::string& suggested = "notes.txt") {
    TemplateItem item;
    item.name = "Meeting Notes";
    item.icon = "note.text";
    return PromptDialog::showNamePrompt(item, suggested, "Projects");
  }

  void showAlert() {
    FileCreator::showErrorDialog("Permission Denied", "You can't.\n\nDetails");
    bool isOver = false;
    mainQueue.async([&] { isOver = true; });
    while (!isOver) g_main_context_iteration(nullptr, TRUE);
  }
};

bool hasNoChild() {
  siginfo_t child = {};
  return ::waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == -1 && errno == ECHILD;
}

TEST_F(Dialogs, TellAllThatTheWindowShows) {
  answerAfter(2, {EventKind::button, 1, "notes.txt"});
  desktopApplication.setClick({":1.7", "token", "x11:2a", ""});
  EXPECT_EQ(ask("😀tes.txt"), std::nullopt);
  std::string told;
  for (const auto& command : commands()) told += dialog::encode(command);
  EXPECT_EQ(
      told,
      R"({"command":"show","title":"New Meeting Notes","text":"Enter a name for the new file in “Projects”:",)"
      R"("floating":true,"centered":true,"accessory":true,"late":false,"activationToken":"token",)"
      R"("parentWindow":"x11:2a","icon":{"names":["sprig-note-text-symbolic","sprig-doc-text-symbolic",)"
      R"("text-x-generic-symbolic"],"size":36,"description":"Meeting Notes"},"field":{"text":"😀tes.txt",)"
      R"("placeholder":"😀tes.txt","width":300,"points":13},"buttons":[{"title":"Create","key":"return"},)"
      R"({"title":"Cancel","key":"escape"}]})"
      "\n"
      R"({"command":"change","selection":{"location":0,"length":5}})"
      "\n");
}

TEST_F(Dialogs, ShowAnAlertWithTheIconOfItsStyleAndWithoutAUsedToken) {
  answerAfter(1, {EventKind::close, 0, ""});
  desktopApplication.setClick({":1.7", "token", "x11:2a", ""});
  for (const auto* token : {"token", ""}) {
    showAlert();
    const auto show = std::get<dialog::Show>(commands().at(0));
    EXPECT_EQ(show.icon->names, std::vector<std::string>{"dialog-warning"});
    EXPECT_FALSE(show.field || show.isFloating);
    EXPECT_EQ(std::tie(show.activationToken, show.parentWindow), std::tuple(token, "x11:2a"));
  }
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Dialogs, ShowOnlyTextAndNoMoreThanCanBeRead) {
  answerAfter(1, {EventKind::close, 0, ""});
  const std::string title(1000, 't');
  FileCreator::showErrorDialog(title + "\xff" + '\0' + "b",
                               std::string(9, 'x') + "ü" + std::string(1 << 22, 'y') + "ü reason");
  mainQueue.runPending();
  const auto show = std::get<dialog::Show>(commands().at(0));
  EXPECT_EQ(show.title, title + "\uFFFD␀b");
  EXPECT_TRUE(show.text.starts_with("xxxxxxxxxüyyy") && show.text.ends_with("yyyü reason"));
  EXPECT_NE(show.text.find("y…y"), std::string::npos);
  EXPECT_LT(show.text.size(), 20000U);
}

TEST_F(Dialogs, GiveWhatTheUserDoesToTheProduct) {
  struct Row {
    dialog::Event event;
    Name result;
  };
  for (const auto& row :
       {Row{{EventKind::field, 0, " grüße.md "}, "grüße.md"}, Row{{EventKind::button, 0, ""}, "a.md"},
        Row{{EventKind::button, 1, "x"}, {}}, Row{{EventKind::close, 0, "x"}, {}}}) {
    // It counts even if the dialog has gone meanwhile.
    play(saying(row.event));
    EXPECT_EQ(ask("a.md"), row.result) << dialog::encode(row.event);
  }
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Dialogs, LeaveANameAsItIsThatCanNotBeShownAsItIs) {
  const std::string huge(2 << 20, 'x');
  const std::string part(30000, 'x');
  for (const auto& [name, shownName] : {std::pair<std::string, std::string>{"caf\xe9.txt", "caf\uFFFD.txt"},
                                        {std::string("a\0b.txt", 7), "a␀b.txt"},
                                        {huge, part + "…" + part}}) {
    answerWith(shownName);
    EXPECT_EQ(ask(name), name);
    answerWith(shownName + "!");
    EXPECT_EQ(ask(name), shownName + "!");
  }
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Dialogs, TakeTheFocusForAClickThatWaitedByTheAnswerItWaitedFor) {
  answerAfter(3, {EventKind::field, 0, "a", "answer"});
  desktopApplication.setClick({":1.7", "first", "", ""});
  mainQueue.async([&] { desktopApplication.comeToFront("second"); });
  ask();
  EXPECT_EQ(std::get<dialog::Change>(commands().at(1)).activationToken, "second");
  answerAfter(2, {EventKind::field, 0, "a"});
  for (const auto& [clicked, told] : {std::pair{"second", "answer"}, {"third", "third"}}) {
    desktopApplication.setClick({":1.7", clicked, "", ""});
    ask();
    EXPECT_EQ(std::get<dialog::Show>(commands().at(0)).activationToken, told);
  }
}

TEST_F(Dialogs, FollowTheModelAndComeToTheFront) {
  answerAfter(4, {EventKind::field, 0, "typed"});
  platform::Alert alert;
  const auto field = std::make_shared<platform::TextField>();
  alert.addButton("Take");
  alert.accessoryView = std::make_shared<platform::View>();
  alert.accessoryView->subviews.push_back(field);
  alert.window->initialFirstResponder = field;
  mainQueue.async([&] {
    desktopApplication.comeToFront("token");
    field->stringValue = "new";
    alert.window->orderOut();
    mainQueue.async([&] {
      alert.window->makeKeyAndOrderFront();
      field->currentEditor->selectedRange = platform::TextRange{1, 2};
    });
  });
  EXPECT_EQ(desktopApplication.runModal(alert), 1000);
  EXPECT_EQ(field->stringValue, "typed");
  EXPECT_FALSE(alert.window->isVisible || field->currentEditor);
  const auto told = commands();
  EXPECT_EQ(std::get<dialog::Change>(told.at(1)).activationToken, "token");
  EXPECT_EQ(std::get<dialog::Change>(told.at(2)).text, "new");
  const auto& last = std::get<dialog::Change>(told.at(3));
  EXPECT_TRUE(last.comesToFront && last.selection && last.selection->length == 2 && !last.text);
}

TEST_F(Dialogs, KeepTheWindowBehindUntilTheOneInFrontIsAnswered) {
  // The dialog in front is answered after the one behind it.
  play("read -r show;" + shown + "case $show in *'\"field\"'*)\n" + saying({EventKind::field, 0, "outer"}) +
       "touch \"$0.answered\";; *) until test -e \"$0.answered\"; do :; done\n" +
       saying({EventKind::button, 0, ""}) + "touch \"$0.inner\";; esac\n" + untilTheEnd);
  mainQueue.async([&] { showAlert(); });
  EXPECT_EQ(ask(), "outer");
  EXPECT_TRUE(std::filesystem::exists(script.path() + ".inner"));
}

TEST_F(Dialogs, CancelAQuestionAndLogAnAlertWhenTheWindowIsLost) {
  showAlert();
  const auto descriptors = openDescriptors();
  struct Row {
    const char* what;
    std::string script;
    const char* reason;
  };
  for (const auto& row :
       {Row{"dies at once", "exit 3", "it has ended by itself"},
        Row{"dies before it is read", "kill -9 $$", "it has ended by itself"},
        Row{"dies later", "read -r show;" + shown + "exit 1", "it has ended by itself"},
        Row{"says nonsense", "echo hello;" + untilTheEnd, "it can't be understood: not JSON"},
        Row{"says too much", "head -c 3000000 /dev/zero 2>/dev/null;" + untilTheEnd, "it says too much"}}) {
    play(row.script);
    log.takeLines();
    EXPECT_EQ(ask(), std::nullopt) << row.what;
    const std::string question = "[SprigFinder] No dialog for the name of a new file: ";
    const auto lines = log.takeLines();
    ASSERT_EQ(lines.size(), 1U) << row.what;
    EXPECT_TRUE(lines[0].starts_with(question) && lines[0].find(row.reason) != std::string::npos) << lines[0];
    showAlert();
    EXPECT_EQ(log.takeLines().at(1), "[SprigFinder] Permission Denied You can't.  Details") << row.what;
    EXPECT_TRUE(eventually(hasNoChild)) << row.what;
    // GLib closes what it watched a process with on a thread of its own.
    EXPECT_TRUE(eventually([&] { return openDescriptors() <= descriptors; })) << row.what;
  }
}

TEST_F(Dialogs, DoWithoutAProgram) {
  EXPECT_EQ(ask(), std::nullopt);
  EXPECT_NE(log.lines().at(0).find("No such file or directory"), std::string::npos);
}

TEST_F(Dialogs, EndAProgramThatShowsNothingOrHangsOrWillNotLeave) {
  constexpr auto soon = std::chrono::milliseconds(100);
  DesktopApplication impatient(log, {script.path(), soon, soon});
  platform::Alert alert;
  alert.addButton("Close");
  play("exec sleep 600");
  EXPECT_EQ(impatient.runModal(alert), desktop::DialogSession::noButtonCode);
  EXPECT_NE(log.takeLines().at(0).find("it shows no window"), std::string::npos);
  // One that comes to the front when it is told to may take its time with the rest.
  const std::string button = saying({EventKind::button, 0, ""});
  for (const auto& [answer, code] :
       {std::pair<std::string, int>{"", desktop::DialogSession::noButtonCode}, {shown, 1000}}) {
    play(shown + "read -r show; read -r front;" + answer + "sleep 0.3;" + button + untilTheEnd);
    mainQueue.async([&] { impatient.comeToFront(""); });
    EXPECT_EQ(impatient.runModal(alert), code);
  }
  EXPECT_NE(log.takeLines().at(0).find("it has stopped answering"), std::string::npos);
  play(shown + saying({EventKind::button, 0, ""}) + "trap '' TERM HUP; kill -STOP $$");
  EXPECT_EQ(desktopApplication.runModal(alert), 1000);
  EXPECT_TRUE(eventually(hasNoChild));
}

TEST_F(Dialogs, SurviveAProgramThatDoesNotListen) {
  play(shown + "exec sleep 600");
  platform::Alert alert;
  alert.accessoryView = std::make_shared<platform::View>();
  alert.accessoryView->subviews.push_back(std::make_shared<platform::TextField>());
  alert.accessoryView->subviews[0]->stringValue = std::string(1 << 20, 'x');
  for (int round = 0; round < 20; ++round)
    mainQueue.async([&] { alert.accessoryView->subviews[0]->stringValue += "y"; });
  mainQueue.async([&] { mainQueue.async([&] { desktopApplication.stopModal(5); }); });
  EXPECT_EQ(desktopApplication.runModal(alert), 5);
  EXPECT_TRUE(eventually(hasNoChild));
}

}  // namespace
}  // namespace sprig::test
