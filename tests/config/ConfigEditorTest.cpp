// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigEditor.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "config/BuiltinTemplates.h"
#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"
#include "support/TestPlatform.h"

namespace sprig {
namespace {

using Reason = ConfigEditError::Reason;

class ConfigEditorTest : public testing::Test {
 protected:
  void write(const std::string& text) const {
    std::filesystem::create_directories(folder.path());
    std::ofstream(path) << text;
  }
  std::string text() const { return ConfigEditor::text().value().value_or("none"); }
  /// The document with the n-th template disabled, and how a change does that.
  static std::string without(std::size_t index) {
    auto config = defaultFallbackConfig();
    config.templates[index].enabled = false;
    return encodeConfig(config);
  }
  static ConfigEditor::Change disable(std::size_t index) {
    return [index](ConfigDocument& document) {
      auto item = document.config().templates[index];
      item.enabled = false;
      document.setTemplate(index, item);
    };
  }
  /// What stands in a folder, besides the document.
  std::vector<std::string> strangers() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
      const auto name = entry.path().filename().string();
      if (name != "config.json") names.push_back(name);
    }
    return names;
  }

  test::TestPlatform platform;
  const platform::FileURL folder = *platform.files.container;
  const std::string path = folder.appendingPath("config.json").path();
  const std::string defaults = encodeConfig(defaultFallbackConfig());
  ConfigEditor editor;
};

TEST_F(ConfigEditorTest, WritesTheFirstDocumentOnTheFirstChangeOnly) {
  EXPECT_TRUE(editor.update([](ConfigDocument&) {}));
  EXPECT_EQ(text(), "none");
  platform.makeFile("container", "in the way");
  EXPECT_EQ(editor.update(disable(2)).error().reason, Reason::inaccessible);
  std::filesystem::remove(folder.path());
  EXPECT_TRUE(ConfigEditor::isWritable());
  platform.files.readOnly = {folder.deletingLastPathComponent()};
  EXPECT_FALSE(ConfigEditor::isWritable()) << "no folder can be made there";
  EXPECT_TRUE(editor.update(disable(2)) && ConfigEditor::isWritable());
  for (const auto& location : {folder, platform::FileURL(path)}) {
    platform.files.readOnly = {location};
    EXPECT_FALSE(ConfigEditor::isWritable()) << location.path();
  }
  EXPECT_EQ(test::readFile(platform::FileURL(path)), without(2));
  EXPECT_TRUE(ConfigEditor::backups().empty());
}

TEST_F(ConfigEditorTest, KeepsModeAndLinkAndABackupOfWhatItFound) {
  const auto target = folder.deletingLastPathComponent().appendingPath("dotfiles.json").path();
  write("");
  std::filesystem::rename(path, target);
  std::ofstream(target) << defaults;
  std::filesystem::create_symlink("../dotfiles.json", path);
  ::chmod(target.c_str(), 0640);
  platform.clock.step = std::chrono::milliseconds(1);
  ASSERT_TRUE(editor.update(disable(0)) && editor.update(disable(1)));
  struct stat status = {};
  ASSERT_EQ(::stat(target.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, S_IFREG | 0640U);
  EXPECT_TRUE(std::filesystem::is_symlink(path));
  for (const char* foreign : {"config-notes.txt", "notes.json"}) {
    platform.files.appendData("not a backup", platform.files.stateDirectory().appendingPath(foreign));
  }
  std::ofstream(target) << defaults;
  ASSERT_TRUE(ConfigEditor().update(disable(1)));
  ASSERT_EQ(ConfigEditor::backups().size(), 1U);
  EXPECT_EQ(platform.files.contentsOfFile(ConfigEditor::backups()[0]), defaults);
  for (std::size_t index = 2; index < 9; ++index) ASSERT_TRUE(ConfigEditor().update(disable(index)));
  ASSERT_EQ(ConfigEditor::backups().size(), ConfigEditor::maxBackups);
  EXPECT_EQ(decodeConfig(*platform.files.contentsOfFile(ConfigEditor::backups()[0])).templates[7].enabled,
            false);
}

TEST_F(ConfigEditorTest, NeverWritesOverWhatItCannotChange) {
  struct Row {
    std::string before;
    ConfigEditor::Change change;
    Reason reason;
  };
  const ConfigEditor::Change spoil = [](ConfigDocument& document) {
    auto item = document.config().templates[0];
    item.name = "\xFF";
    document.setTemplate(0, item);
  };
  for (const auto& row : {Row{"{", disable(0), Reason::broken}, Row{defaults, spoil, Reason::invalid}}) {
    write(row.before);
    const auto outcome = editor.update(row.change);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().reason, row.reason);
    EXPECT_EQ(text(), row.before);
  }
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  EXPECT_EQ(editor.update(disable(0)).error().reason, Reason::inaccessible);
  EXPECT_EQ(editor.replaceText({}, defaults)->reason, Reason::inaccessible);
}

TEST_F(ConfigEditorTest, ReplacesABrokenTextOnlyByAValidOneAndOnlyTheOneThatWasRead) {
  write("{");
  EXPECT_EQ(editor.replaceText("{", "}")->reason, Reason::invalid);
  EXPECT_EQ(editor.replaceText("[", defaults)->reason, Reason::changedMeanwhile);
  EXPECT_EQ(text(), "{");
  EXPECT_FALSE(editor.replaceText("{", defaults));
  EXPECT_EQ(text(), defaults);
  // Another change in the same moment has no backup of its own.
  EXPECT_FALSE(ConfigEditor().replaceText(defaults, without(1)));
  write(defaults);
  EXPECT_EQ(platform.files.contentsOfFile(ConfigEditor::backups().at(0)), "{");
  platform.calls->meanwhile = [this] { write(without(4)); };
  EXPECT_EQ(editor.replaceText(defaults, without(1))->reason, Reason::changedMeanwhile);
  EXPECT_EQ(text(), without(4));
}

TEST_F(ConfigEditorTest, AppliesAChangeAgainToWhatAnotherProgramWroteMeanwhile) {
  ASSERT_TRUE(editor.update([this](ConfigDocument& document) {
    disable(5)(document);
    if (text() == "none") write(without(4));
  }));
  EXPECT_FALSE(decodeConfig(text()).templates[4].enabled) << "a first document that comes meanwhile";
  // Both as a new file and into the same one; before the last look, and after it.
  for (const bool isInPlace : {false, true}) {
    write(defaults);
    platform.calls->meanwhile = [&] {
      if (!isInPlace) std::filesystem::remove(path);
      write(without(4));
    };
    ASSERT_TRUE(editor.update(disable(5)));
    const auto templates = decodeConfig(text()).templates;
    EXPECT_FALSE(templates[4].enabled || templates[5].enabled) << isInPlace;
    int calls = 0;
    const auto outcome = editor.update([&](ConfigDocument& document) {
      disable(static_cast<std::size_t>(++calls))(document);
      write(without(9));
      std::filesystem::last_write_time(
          path, std::filesystem::file_time_type::clock::now() + std::chrono::hours(calls));
    });
    EXPECT_EQ(outcome.error().reason, Reason::changedMeanwhile);
    EXPECT_EQ(calls, 5);
    EXPECT_EQ(text(), without(9));
    EXPECT_EQ(strangers(), std::vector<std::string>{});
  }
}

TEST_F(ConfigEditorTest, LosesNoChangeOfManyWriters) {
  write(defaults);
  std::vector<std::thread> writers;
  for (std::size_t index = 0; index < 8; ++index) {
    writers.emplace_back([index] { EXPECT_TRUE(ConfigEditor().update(disable(index))); });
  }
  for (auto& writer : writers) writer.join();
  const auto templates = decodeConfig(text()).templates;
  for (std::size_t index = 0; index < templates.size(); ++index) {
    EXPECT_EQ(templates[index].enabled, index >= 8 && defaultFallbackConfig().templates[index].enabled);
  }
}

TEST_F(ConfigEditorTest, LeavesTheOldTextOrTheNewOneWhicheverCallFails) {
  for (const bool canExchange : {true, false}) {
    platform.calls->canRefuseToReplace = canExchange;
    for (int call = 1;; ++call) {
      write(defaults);
      platform.calls->failCall(call, EIO);
      const auto outcome = editor.update(disable(1));
      EXPECT_TRUE(outcome || outcome.error().reason == Reason::inaccessible) << call;
      const bool isOver = platform.calls->made < call;
      platform.calls->failCall(0, 0);
      EXPECT_TRUE(text() == without(1) || (!outcome && text() == defaults)) << call << text();
      EXPECT_EQ(strangers(), std::vector<std::string>{}) << call;
      if (isOver) break;
    }
  }
}

}  // namespace
}  // namespace sprig
