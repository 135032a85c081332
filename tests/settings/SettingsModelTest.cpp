// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/SettingsModel.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "config/BuiltinTemplates.h"
#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"
#include "settings/RowGeometry.h"
#include "settings/SettingsURL.h"
#include "settings/TemplateDraft.h"
#include "settings/TemplatePreview.h"
#include "support/TestPlatform.h"

namespace sprig::settings {
namespace {

using State = TemplateDraft::State;

TemplateKey key(const char* id) { return {id, 0}; }

/// A document with templates a, b, c and d, of which the menu itself has two; b is not enabled.
class SettingsModelTest : public testing::Test {
 protected:
  static AppConfigItem initial() {
    AppConfigItem config;
    config.version = 1;
    config.settings.maxVisibleTemplates = 2;
    for (const auto* name : {"a", "b", "c", "d"}) {
      TemplateItem item;
      item.id = item.name = name;
      item.extensionName = ".md";
      item.filenamePattern = std::string(name) + " {{date}}";
      item.enabled = item.name != "b";
      config.templates.push_back(item);
    }
    return config;
  }
  SettingsModelTest() {
    model.onFailure([this](const std::string& failure) { failures.push_back(failure); });
    model.onChange([this] { ++changes; });
  }
  AppConfigItem onDisk() const { return decodeConfig(test::readFile(file)); }
  std::string order() const {
    std::string names;
    for (const auto& item : onDisk().templates) names += item.name;
    return names;
  }
  /// As another program does it.
  void edit(const std::function<void(AppConfigItem&)>& change) {
    auto config = onDisk();
    change(config);
    test::writeFile(file, encodeConfig(config));
  }

  test::TestPlatform platform;
  const platform::FileURL file = platform.writeConfig(encodeConfig(initial()));
  SettingsModel model;
  std::vector<std::string> failures;
  int changes = 0;
};

TEST_F(SettingsModelTest, ShowsWhereTheMenuHasEachTemplateAndFindsThem) {
  const auto& rows = model.rows();
  ASSERT_EQ(rows.size(), 4U);
  const Placement placements[] = {Placement::inMenu, Placement::nowhere, Placement::inMenu,
                                  Placement::underMoreTemplates};
  for (std::size_t index = 0; index < rows.size(); ++index) {
    EXPECT_EQ(rows[index].placement, placements[index]) << index;
  }
  edit([](AppConfigItem& config) {
    config.templates[3].id = "a";
    config.templates[3].name = "Café Notes";
    config.templates[3].category = "rust";
  });
  model.reload();
  EXPECT_EQ(model.rows()[3].key, (TemplateKey{"a", 1}));
  for (const auto* search : {"", "café", "CAFE\xcc\x81", "notes .md", "code dev", "{{date"}) {
    EXPECT_TRUE(TemplateSearch(search).finds(model.rows()[3])) << search;
  }
  for (const auto* search : {"tea", "notes .txt"})
    EXPECT_FALSE(TemplateSearch(search).finds(model.rows()[3])) << search;
}

struct Operation {
  const char* name;
  std::function<bool(SettingsModel&)> perform;
  /// The file's templates afterwards.
  const char* order;
};

class OperationTest : public SettingsModelTest, public testing::WithParamInterface<Operation> {};

TEST_P(OperationTest, ChangesTheFileAndCanBeUndoneAndRedone) {
  const auto before = test::readFile(file);
  EXPECT_TRUE(GetParam().perform(model));
  EXPECT_EQ(order(), GetParam().order);
  const auto after = test::readFile(file);
  ASSERT_NE(before, after);
  ASSERT_TRUE(model.undo());
  EXPECT_EQ(onDisk(), initial());
  EXPECT_FALSE(model.undo());
  ASSERT_TRUE(model.redo());
  EXPECT_EQ(test::readFile(file), after);
  EXPECT_EQ(failures, std::vector<std::string>());
}

const Operation operations[] = {
    {"disable", [](auto& model) { return model.setEnabled(key("a"), false); }, "abcd"},
    {"favorite", [](auto& model) { return model.setFavorite(key("b"), true); }, "abcd"},
    {"up", [](auto& model) { return model.move(key("c"), 1); }, "acbd"},
    {"down", [](auto& model) { return model.move(key("a"), 1); }, "bacd"},
    {"top", [](auto& model) { return model.move(key("d"), 0); }, "dabc"},
    {"far", [](auto& model) { return model.move(key("a"), 99); }, "bcda"},
    {"remove", [](auto& model) { return model.remove(key("b")); }, "acd"},
    {"new", [](auto& model) { return model.addNew() == key("new-template"); }, "New Templateabcd"},
    {"duplicate", [](auto& model) { return model.duplicate(key("b")) == key("b-copy"); }, "abb Copycd"},
    {"files",
     [](auto& model) {
       return model.addFiles(
           {platform::FileURL(SPRIG_DOCS "/testing.md"), platform::FileURL(SPRIG_DOCS "/porting.md")});
     },
     "testingportingabcd"},
    {"settings", [](auto& model) { return model.setSettings({.maxVisibleTemplates = 5}); }, "abcd"},
};
INSTANTIATE_TEST_SUITE_P(, OperationTest, testing::ValuesIn(operations),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SettingsModelTest, UndoesStepByStepWhatOthersHaveNotChanged) {
  ASSERT_TRUE(model.remove(key("b")) && model.setEnabled(key("a"), false) && model.move(key("d"), 0));
  EXPECT_EQ(model.undoable(), "Move “d”");
  edit([](AppConfigItem& config) {
    std::erase_if(config.templates, [](const auto& item) { return item.id == "d"; });
    config.templates[0].name = "A";
  });
  EXPECT_FALSE(model.undo());  // of a template that has gone
  EXPECT_TRUE(model.undo() && model.undo());
  EXPECT_EQ(order(), "Abc");
  EXPECT_TRUE(onDisk().templates[0].enabled);
}

TEST_F(SettingsModelTest, TellsOfChangesOnTheDiskOnce) {
  model.reload();
  EXPECT_EQ(changes, 0);
  edit([](AppConfigItem& config) { config.templates.pop_back(); });
  model.reload();
  model.reload();
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(model.rows().size(), 3U);
}

TEST_F(SettingsModelTest, WritesTheBuiltInTemplatesOnTheFirstChangeOnly) {
  platform.files.removeFile(file);
  model.reload();
  EXPECT_EQ(model.rows().size(), 11U);
  EXPECT_FALSE(model.setEnabled(key("builtin-json"), true));
  EXPECT_FALSE(platform.files.fileExists(file));
  EXPECT_TRUE(model.remove(key("builtin-json")));
  EXPECT_EQ(decodeConfig(*ConfigEditor::text().value()).templates.size(), 10U);
  platform.files.removeFile(ConfigEditor::newDocumentURL());
  model.reload();
  EXPECT_EQ(decodeConfig(model.editableText()), defaultFallbackConfig());
  EXPECT_TRUE(model.saveText(model.editableText(), encodeConfig(initial())));
}

TEST_F(SettingsModelTest, LeavesABrokenFileAloneUntilTheUserDecides) {
  ASSERT_TRUE(model.setEnabled(key("a"), false));  // which keeps a backup
  const auto whole = encodeConfig(initial());
  auto broken = whole;
  broken.replace(broken.find("\"enabled\": true"), 15, "\"enabled\": \"no\"");
  const auto breakIt = [&] {
    test::writeFile(file, broken);
    model.reload();
    ASSERT_TRUE(model.fault() && model.fault()->position);
    EXPECT_NE(model.fault()->reason.find("templates[0].enabled"), std::string::npos);
    EXPECT_EQ(positionIn(broken, broken.find("\"no\"")).line, model.fault()->position->line);
  };
  breakIt();
  EXPECT_TRUE(model.rows().empty());
  EXPECT_FALSE(model.remove(key("a")) || model.addNew() || model.setSettings({}) ||
               model.saveText(broken, "{"));
  EXPECT_EQ(test::readFile(file), broken);
  EXPECT_FALSE(model.saveText("{}", whole));  // which is not what was edited
  EXPECT_TRUE(model.saveText(broken, whole));
  EXPECT_EQ(test::readFile(file), whole);
  breakIt();
  EXPECT_TRUE(model.restoreBackup());
  EXPECT_EQ(test::readFile(file), whole);
  breakIt();
  const auto copy = model.startAfresh();
  ASSERT_TRUE(copy);
  EXPECT_EQ(test::readFile(*copy), broken);
  EXPECT_EQ(onDisk(), defaultFallbackConfig());
  EXPECT_FALSE(model.fault());
}

TEST_F(SettingsModelTest, AnEditorTakesInWhatOthersChangeAndAsksWhereBothDid) {
  TemplateDraft draft(model, key("a"));
  const auto type = [&](const std::string& name) {
    auto item = draft.item();
    item.name = name;
    draft.edit(item);
  };
  type("A");
  edit([](AppConfigItem& config) { config.templates[0].content = "theirs"; });
  EXPECT_TRUE(draft.write());  // before anybody was told of the other change
  EXPECT_EQ(draft.item().content, "theirs");
  type("AA");
  EXPECT_TRUE(draft.write());
  EXPECT_EQ(order(), "AAbcd");

  const auto conflict = [&](const char* theirs) {
    edit([&](AppConfigItem& config) { config.templates[0].name = theirs; });
    model.reload();
    EXPECT_TRUE(draft.follow());
    EXPECT_EQ(draft.state(), State::changedElsewhere);
    EXPECT_FALSE(draft.follow() || draft.write());
    EXPECT_EQ(onDisk().templates[0].name, theirs);
  };
  conflict("X");
  EXPECT_TRUE(draft.keepMine());
  EXPECT_EQ(order(), "AAbcd");
  conflict("Y");
  draft.reload();
  EXPECT_EQ(draft.item().name, "Y");
  type("Z");
  edit([](AppConfigItem& config) { config.templates[0].name = "late"; });
  EXPECT_FALSE(draft.write());
  EXPECT_EQ(draft.state(), State::changedElsewhere);
  EXPECT_EQ(order(), "latebcd");
  edit([](AppConfigItem& config) { config.templates.erase(config.templates.begin()); });
  model.reload();
  EXPECT_TRUE(draft.follow());
  EXPECT_EQ(draft.state(), State::gone);
}

TEST_F(SettingsModelTest, WhatOneEditorWroteIsOneStep) {
  ASSERT_TRUE(model.move(key("d"), 0));
  TemplateDraft draft(model, key("a"));
  for (const auto* name : {"n", "ne", "new"}) {
    auto item = draft.item();
    item.name = name;
    item.content += "x";
    draft.edit(item);
    ASSERT_TRUE(draft.write());
  }
  EXPECT_EQ(order(), "dnewbc");
  EXPECT_TRUE(model.undo());
  EXPECT_EQ(order(), "dabc");
  EXPECT_TRUE(model.undo());
  EXPECT_EQ(onDisk(), initial());
}

TEST_F(SettingsModelTest, ImportsAgainWhatHasChangedAndTakesItBackInOneStep) {
  const auto folder = platform.makeFolder("Templates");
  for (const auto* name : {"x.txt", "y.txt"}) test::writeFile(folder.appendingPath(name), "old");
  ASSERT_TRUE(model.addImported(model.templatesIn(folder), {0, 1}));
  EXPECT_EQ(order(), "abcdxy");
  test::writeFile(folder.appendingPath("x.txt"), "new");
  const auto again = model.templatesIn(folder);
  EXPECT_EQ(again.entries()[0].outcome, ImportOutcome::updated);
  EXPECT_EQ(again.entries()[1].outcome, ImportOutcome::unchanged);
  ASSERT_TRUE(model.addImported(again, {0, 1}));
  EXPECT_EQ(onDisk().templates[4].content, "new");
  EXPECT_TRUE(model.undo());
  EXPECT_EQ(onDisk().templates[4].content, "old");
  EXPECT_TRUE(model.undo());
  EXPECT_EQ(onDisk(), initial());
}

TEST_F(SettingsModelTest, PreviewsTheFileThatAPickWouldMake) {
  TemplateItem item;
  item.filenamePattern = "Log {{date}}";
  item.extensionName = ".md";
  item.content = "{{name}} in {{folder}}";
  const auto folder = platform.makeFolder("Projects");
  EXPECT_EQ(previewOf(item, folder).filename, "Log 2026-11-16.md");
  test::writeFile(folder.appendingPath("Log 2026-11-16.md"), "");
  const auto preview = previewOf(item, folder);
  EXPECT_EQ(preview.filename, "Log 2026-11-16 2.md");
  EXPECT_EQ(preview.content, "Log 2026-11-16 in Projects");
  item.contentBase64 = "AAEC";
  EXPECT_EQ(previewOf(item, folder).content, std::string("\0\1\2", 3));
  item.contentBase64 = "no";
  EXPECT_FALSE(previewOf(item, folder).hasOwnBytes);
}

TEST(RowGeometryTest, HasWidgetsForAllThatIsInSightAndFewMore) {
  for (const auto divided : {std::optional<std::size_t>(), std::make_optional<std::size_t>(0), {7}, {19}}) {
    const RowGeometry list{20, 10, divided, 5};
    for (int top = -30; top < 260; ++top) {
      const auto range = list.rowsBetween(top, top + 35, 2);
      for (std::size_t row = 0; row < list.count; ++row) {
        const bool isInSight = list.topOf(row + 1) > top && list.topOf(row) < top + 35;
        EXPECT_TRUE(!isInSight || range.has(row)) << "row " << row << " at " << top;
      }
      EXPECT_TRUE(range.first < range.last && range.last - range.first <= 9) << top;
    }
  }
  EXPECT_EQ(RowGeometry{}.rowsBetween(0, 100, 2), RowGeometry::Range{});
}

TEST(SettingsURLTest, UnderstandsTwoURLsAndNothingElse) {
  const auto none = std::nullopt;
  const auto list = SettingsTarget{};
  const auto item = [](const char* id) { return SettingsTarget{id}; };
  const std::pair<std::string, std::optional<SettingsTarget>> rows[] = {
      {"sprig://settings", list},
      {"sprig://settings/", list},
      {"sprig:///settings", list},
      {"sprig:settings", list},
      {"SPRIG://Settings", list},
      {"sprig://settings/templates/my-notes", item("my-notes")},
      {"sprig:///settings/templates/a%20%2F%C3%A9/", item("a /é")},
      {"sprig://settings/templates", none},
      {"sprig://settings/templates/a/b", none},
      {"sprig://settings/templates/%", none},
      {"sprig://settings/templates/a%4", none},
      {"sprig://settings/templates/%FF", none},
      {"sprig://settings/import?from=http://example.org", none},
      {"sprig://settings?x", none},
      {"sprig://settings#x", none},
      {"sprig://new/settings", none},
      {"sprig://", none},
      {"file:///settings", none},
      {"", none},
      {"sprig://settings/templates/" + std::string(3000, 'a'), none},
  };
  for (const auto& [url, target] : rows) EXPECT_EQ(parseSettingsURL(url), target) << url;
}

}  // namespace
}  // namespace sprig::settings
