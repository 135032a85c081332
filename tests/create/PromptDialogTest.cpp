// SPDX-License-Identifier: GPL-3.0-or-later

#include "create/PromptDialog.h"

#include <gtest/gtest.h>

#include <thread>

#include "create/PromptDialogHandler.h"
#include "support/TestPlatform.h"

namespace sprig {
namespace {

using platform::Alert;
using test::ScriptedApplication;
using Name = std::optional<std::string>;

TemplateItem meetingNotes() {
  TemplateItem item;
  item.name = "Meeting Notes";
  item.icon = "note.text";
  return item;
}

struct Prompt : testing::Test {
  test::TestPlatform platform;

  Name ask(const std::string& suggested = "notes.txt", const std::string& folder = "Projects") {
    return PromptDialog::showNamePrompt(meetingNotes(), suggested, folder);
  }
  const Alert& shown() { return platform.application.shown.back(); }
};

TEST_F(Prompt, ShowsAllThatADesktopNeeds) {
  platform.application.user = [](Alert& alert) {
    const auto& window = *alert.window;
    EXPECT_TRUE(window.isVisible && window.isKey && window.isFrontRegardless);
    const auto* target = window.initialFirstResponder->target;
    EXPECT_TRUE(target != nullptr && target == dynamic_cast<platform::ControlTarget*>(window.delegate));
    EXPECT_TRUE(target == alert.buttons.at(0).target && target == alert.buttons.at(1).target);
  };
  ask();
  const auto& alert = shown();
  EXPECT_EQ(alert.messageText, "New Meeting Notes");
  EXPECT_EQ(alert.informativeText, "Enter a name for the new file in “Projects”:");
  EXPECT_EQ(alert.style, platform::AlertStyle::informational);
  EXPECT_EQ(alert.icon, (platform::Image{"note.text", "Meeting Notes",
                                         platform::SymbolConfiguration{36, platform::FontWeight::regular},
                                         platform::ImageRendering::original}));
  const auto& create = alert.buttons[0];
  EXPECT_EQ(std::tie(create.title, create.tag, create.keyEquivalent), std::tuple("Create", 1000, "\r"));
  const auto& cancel = alert.buttons[1];
  EXPECT_EQ(std::tie(cancel.title, cancel.tag, cancel.keyEquivalent), std::tuple("Cancel", 1001, "\x1b"));

  EXPECT_EQ(alert.accessoryView->frame, (platform::Rect{0, 0, 300, 32}));
  const auto& field = alert.accessoryView->subviews.at(0);
  EXPECT_EQ(field->frame, (platform::Rect{0, 3, 300, 26}));
  EXPECT_EQ(field->fontSize, 13);
  EXPECT_TRUE(field->isEditable && field->isSelectable);
  EXPECT_EQ(std::tie(field->focusRingType, field->placeholderString),
            std::tuple(platform::FocusRingType::standard, "notes.txt"));
  const auto& window = *alert.window;
  EXPECT_EQ(window.level, platform::WindowLevel::floating);
  EXPECT_TRUE(!window.hidesOnDeactivate && window.isCentered && !window.isVisible);
  EXPECT_TRUE(window.initialFirstResponder == field && window.firstResponder == field);
  EXPECT_EQ(platform.application.policy, platform::ActivationPolicy::accessory);
  platform.process.version = {13, 9, 9};
  ask();
  EXPECT_EQ(platform.application.activations,
            (std::vector<std::string>{"activate", "activateIgnoringOtherApps"}));
}

TEST_F(Prompt, SelectsTheBaseOfTheName) {
  struct Row {
    const char* suggested;
    std::optional<platform::TextRange> selected;
  };
  for (const auto& row :
       {Row{"notes.txt", {{0, 5}}}, Row{"a.txt", {{0, 1}}}, Row{"archive.tar.gz", {{0, 11}}},
        Row{".gitignore", {{0, 10}}}, Row{"\U0001F600é.md", {{0, 3}}}, Row{"", std::nullopt}}) {
    ask(row.suggested);
    const auto& editor = shown().window->firstResponder->currentEditor;
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->selectedRange, row.selected) << row.suggested;
  }
}

TEST_F(Prompt, FallsBackToAPlainDocumentAndThenToNoIcon) {
  EXPECT_EQ(ask("a", ""), std::nullopt);
  EXPECT_EQ(shown().informativeText, "Enter a name for the new file in “Current Folder”:");
  platform.images.missing = {"note.text"};
  ask();
  EXPECT_EQ(shown().icon->symbolName, "doc.text");
  EXPECT_EQ(shown().icon->accessibilityDescription, "Meeting Notes");
  platform.images.refusesConfiguration = true;
  ask();
  EXPECT_EQ(shown().icon, std::nullopt);
  platform.images.missing.insert("doc.text");
  ask();
  EXPECT_EQ(shown().icon, std::nullopt);
}

TEST_F(Prompt, ReturnsWhatTheUserConfirmed) {
  struct Row {
    const char* doing;
    std::function<void(Alert&)> user;
    Name result;
  };
  const auto type = [](const char* text) {
    return [text](Alert& alert) { ScriptedApplication::type(alert, text); };
  };
  const auto press = [this](const char* key) {
    return [this, key](Alert& alert) {
      platform.application.press(alert, key);
      EXPECT_FALSE(alert.window->isVisible);
    };
  };
  for (const auto& row : {
           Row{"types a name with blanks around it", type("  report.md\u3000\n"), "report.md"},
           Row{"types a path", type("a/b"), "a/b"},
           Row{"clears the field", type(" \t"), " suggested.md "},
           Row{"presses Create", press("\r"), "suggested.md"},
           Row{"presses Cancel", press("\x1b"), std::nullopt},
           Row{"closes the window", [](Alert& alert) { ScriptedApplication::close(alert); }, std::nullopt},
           Row{"confirms, which closes the window",
               [&](Alert& alert) {
                 ScriptedApplication::type(alert, "x");
                 ScriptedApplication::close(alert);
               },
               "x"},
           Row{"confirms by other means",
               [this](Alert&) { platform.application.stopModal(PromptDialogHandler::confirmCode); },
               "suggested.md"},
       }) {
    platform.application.user = row.user;
    EXPECT_EQ(ask(" suggested.md "), row.result) << row.doing;
    const int code = row.result ? PromptDialogHandler::confirmCode : PromptDialogHandler::cancelCode;
    EXPECT_EQ(platform.application.lastCode, code) << row.doing;
  }
  platform.application.user = [this](Alert& alert) {
    platform.application.stopModal(5);
    ScriptedApplication::type(alert, "late");
  };
  EXPECT_EQ(ask(), "late") << "whatever ended the session";
}

TEST_F(Prompt, AskedForOnAnotherThreadBlocksThatThreadAndRunsOnTheMainOne) {
  const auto mainThread = std::this_thread::get_id();
  platform.application.user = [&](Alert& alert) {
    EXPECT_EQ(std::this_thread::get_id(), mainThread);
    ScriptedApplication::type(alert, "from afar");
  };
  Name result;
  std::thread asking([&] { result = ask(); });
  platform.mainQueue.run([&] { return !platform.application.shown.empty(); });
  asking.join();
  EXPECT_EQ(result, "from afar");
}

TEST_F(Prompt, NeedsNoTemplateRecord) {
  EXPECT_EQ(PromptDialog::showNamePrompt("Drawing", "Untitled.svg"), std::nullopt);
  EXPECT_EQ(shown().messageText, "New Drawing");
  EXPECT_NE(shown().informativeText.find("“Current Folder”"), std::string::npos);
  EXPECT_EQ(shown().icon->symbolName, "doc.text");
  EXPECT_EQ(shown().window->initialFirstResponder->stringValue, "Untitled.svg");
}

}  // namespace
}  // namespace sprig
