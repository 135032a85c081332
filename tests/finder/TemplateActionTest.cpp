// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "app/FinderSync.h"
#include "config/ConfigEncoder.h"
#include "config/ConfigManager.h"
#include "finder/ContextMenu.h"
#include "finder/TemplateAction.h"
#include "support/TestPlatform.h"

namespace sprig {
namespace {

using platform::Alert;
using platform::FileURL;
using platform::FIMenuKind;
using platform::MenuItem;
using test::ScriptedApplication;

MenuItem entry(const std::string& title, std::optional<std::string> identifier = {}) {
  auto item = MenuItem::titled(title);
  item.identifier = std::move(identifier);
  return item;
}

TemplateItem templateOf(const std::string& id, const std::string& name, const std::string& content) {
  TemplateItem item;
  item.id = id;
  item.name = name;
  item.extensionName = ".txt";
  item.filenamePattern = "{{folder}} {{project}}";
  item.content = content;
  return item;
}

struct Action : testing::Test {
  test::TestPlatform platform;
  FileURL folder = platform.makeFolder("Projects");
  AppConfigItem config;
  std::unique_ptr<FinderSync> finder;

  Action() {
    platform.controller.targeted = folder;
    config.settings.defaultBehavior = "create";
    config.templates = {templateOf("a", "Alpha", "first a"), templateOf("a", "Beta", "second a"),
                        templateOf("c", "Caf\u00E9", "c"), templateOf("", "Nameless", "no id")};
  }

  void load() {
    platform.writeConfig(encodeConfig(config));
    if (!finder) finder = std::make_unique<FinderSync>();
    ConfigManager::shared().reload();
    platform.takeLog();
  }

  std::string pick(const MenuItem& item) {
    if (!finder) load();
    finder->performAction(templateActionSelector, item);
    std::string log;
    for (const auto& line : platform.takeLog()) log += line + "\n";
    platform.mainQueue.runPending();
    return log;
  }

  /// The content of the file that picking the entry creates.
  std::string created(const MenuItem& item) {
    pick(item);
    return platform.workspace.revealed.empty() ? "nothing"
                                               : test::readFile(platform.workspace.revealed.back());
  }
};

TEST_F(Action, FindsTheTemplateByIdentifierThenByTitle) {
  EXPECT_EQ(created(entry("Beta", "a")), "first a") << "the first of equal ids";
  EXPECT_EQ(created(entry("Beta", "unknown")), "second a");
  EXPECT_EQ(created(entry("Beta", "")), "no id") << "an empty identifier is one";
  EXPECT_EQ(created(entry("\u3000 Beta\t")), "second a");
  EXPECT_EQ(created(entry("Cafe\u0301")), "c") << "canonically equivalent";
  platform.workspace.revealed.clear();
  EXPECT_EQ(created(entry("Beta\n")), "nothing");
  EXPECT_EQ(created(entry("beta")), "nothing");
  EXPECT_EQ(pick(entry(" Gamma ")),
            "templateAction invoked for ' Gamma ', identifier: 'none'\n"
            "templateAction error: Could not find template for ' Gamma '\n");
}

TEST_F(Action, StillKnowsWhatAMenuOffered) {
  for (auto& item : config.templates) item.enabled = item.id != "";
  config.settings.maxVisibleTemplates = 1;
  load();
  static_cast<void>(finder->menu(FIMenuKind::contextualMenuForContainer));
  config.templates = {templateOf("a", "Alpha", "new a"), templateOf("d", "Delta", "d"),
                      templateOf("b", "Beta", "new b")};
  load();
  EXPECT_EQ(created(entry("Nameless")), "nothing") << "gone, and never offered since it was disabled";
  EXPECT_EQ(created(entry("Beta")), "second a") << "offered under the title before it was configured";
  EXPECT_EQ(created(entry("Beta", "d")), "d") << "an id that is configured before a title that was offered";
  EXPECT_EQ(created(entry("x", "a")), "second a") << "the last one offered under the id";
  EXPECT_EQ(created(entry("Cafe\u0301")), "c") << "gone from the configuration since";
  EXPECT_EQ(created(entry("Delta")), "d") << "never offered, disabled, but configured";
}

TEST_F(Action, KnowsWhatAMenuOfferedWithoutKeepingAllThatWasConfiguredThen) {
  for (auto& item : config.templates) item.enabled = true;
  load();
  const std::weak_ptr<const AppConfigItem> before = ConfigManager::shared().getConfig();
  static_cast<void>(finder->menu(FIMenuKind::contextualMenuForContainer));
  config.templates.pop_back();
  load();
  EXPECT_FALSE(before.expired());
  static_cast<void>(finder->menu(FIMenuKind::contextualMenuForContainer));
  EXPECT_TRUE(before.expired());
  EXPECT_EQ(created(entry("Cafe\u0301")), "c");
}

TEST_F(Action, CreatesInTheFolderClickedSelectedLastUsedOrOnTheDesktop) {
  const auto file = platform.makeFile("sel/b.txt");
  const auto selected = file.deletingLastPathComponent();
  const auto desktop = platform.makeFolder("account/Desktop");
  const auto folderOf = [&] {
    pick(entry("Alpha"));
    return platform.workspace.revealed.back().deletingLastPathComponent();
  };
  platform.controller.selected = {{file}};
  EXPECT_EQ(folderOf(), folder);
  platform.controller.targeted.reset();
  EXPECT_EQ(folderOf(), selected);
  platform.controller.selected = {{selected, folder}};
  EXPECT_EQ(folderOf(), selected);
  platform.controller.selected.reset();
  EXPECT_EQ(folderOf(), desktop);
  platform.controller.targeted = folder;
  static_cast<void>(finder->menu(FIMenuKind::contextualMenuForContainer));
  config.settings.showInFinder = false;
  load();
  platform.controller.targeted = selected;
  EXPECT_EQ(finder->menu(FIMenuKind::contextualMenuForContainer), nullptr);
  platform.controller.targeted.reset();
  platform.controller.selected = std::vector<FileURL>{};
  EXPECT_EQ(folderOf(), folder) << "only a menu that is shown counts";

  FinderSync fresh;
  platform.users.home.reset();
  platform.takeLog();
  fresh.templateAction(entry("Alpha"));
  EXPECT_EQ(platform.takeLog().back(), "templateAction error: Could not resolve target folder");
}

TEST_F(Action, AsksForANameWhenTheTemplateOrTheSettingsSaySo) {
  struct Row {
    std::optional<std::string> behavior;
    bool requiresInput;
    bool asks;
  };
  for (const auto& row :
       {Row{"create", false, false}, Row{"", false, false}, Row{"Prompt", false, false},
        Row{"create", true, true}, Row{"prompt", false, true}, Row{std::nullopt, false, true}}) {
    config.settings.defaultBehavior = row.behavior;
    config.templates[0].requiresInput = row.requiresInput;
    load();
    platform.application.shown.clear();
    pick(entry("Alpha"));
    EXPECT_EQ(!platform.application.shown.empty(), row.asks) << row.behavior.value_or("absent");
  }
}

TEST_F(Action, UsesTheNameTheUserTypesAndStopsWhenTheUserDoes) {
  config.settings.defaultBehavior.reset();
  platform.application.user = [](Alert& alert) { ScriptedApplication::type(alert, " mine "); };
  pick(entry("Alpha"));
  EXPECT_EQ(platform.workspace.revealed.back(), folder.appendingPath("mine.txt"));
  EXPECT_EQ(platform.application.shown.back().informativeText,
            "Enter a name for the new file in “Projects”:");
  EXPECT_EQ(platform.application.shown.back().window->initialFirstResponder->placeholderString,
            "Projects Projects.txt");
  const auto shown = platform.application.shown.size();
  EXPECT_EQ(performTemplateAction(entry("Alpha"), {}, "given"), folder.appendingPath("given.txt"));
  EXPECT_EQ(platform.application.shown.size(), shown) << "asked for a name that it had";
  platform.application.user = [this](Alert& alert) { platform.application.press(alert, "\x1b"); };
  const auto log = pick(entry("Alpha"));
  EXPECT_TRUE(log.ends_with("templateAction: User cancelled prompt\n")) << log;
  EXPECT_EQ(test::namesIn(folder), (std::vector<std::string>{"given.txt", "mine.txt"}));
}

TEST_F(Action, IsLoggedStepByStep) {
  const auto file = folder.appendingPath("Projects Projects.txt").path();
  EXPECT_EQ(pick(entry("Alpha", "a")),
            "templateAction invoked for 'Alpha', identifier: 'a'\n"
            "templateAction executing for template 'Alpha' in folder '" +
                folder.path() +
                "'\n"
                "Successfully wrote file to " +
                file +
                "\n"
                "templateAction SUCCESS: Created file '" +
                file + "'\n");
  finder->performAction(openSettingsActionSelector, entry("Sprig Settings…"));
  EXPECT_EQ(platform.workspace.opened, std::vector<std::string>{"sprig://settings"});
  EXPECT_EQ(platform.takeLog(), std::vector<std::string>{"openSettingsAction invoked"});
}

TEST_F(Action, LeavesTheExplanationOfAFailureToTheAlert) {
  platform.controller.targeted = folder.appendingPath("gone");
  const auto log = pick(entry("Alpha"));
  EXPECT_TRUE(log.ends_with("templateAction FAILURE: FileCreator returned nil\n")) << log;
  EXPECT_EQ(platform.application.shown.size(), 1U);
}

}  // namespace
}  // namespace sprig
