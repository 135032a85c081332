// SPDX-License-Identifier: GPL-3.0-or-later

#include "create/FileCreator.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "create/Base64.h"
#include "support/TestPlatform.h"

namespace sprig {
namespace {

using platform::Error;
using platform::FileURL;

TemplateItem notes() {
  TemplateItem item;
  item.name = "Notes";
  item.extensionName = ".md";
  item.filenamePattern = "{{folder}} notes.md";
  item.content = "# {{name}} in {{project}}\n";
  return item;
}

struct Creator : testing::Test {
  test::TestPlatform platform;
  FileURL folder = platform.makeFolder("Projects");

  std::string contentOf(const std::string& name) { return test::readFile(folder.appendingPath(name)); }
};

TEST_F(Creator, WritesTheRenderedTextUnderAFreeNameAndRevealsIt) {
  platform.makeFile("Projects/Projects notes.md", "mine");
  const auto created = FileCreator::createFile(notes(), folder, {});
  ASSERT_EQ(created, folder.appendingPath("Projects notes 2.md"));
  EXPECT_EQ(contentOf("Projects notes 2.md"), "# Projects notes in Projects\n");
  EXPECT_EQ(contentOf("Projects notes.md"), "mine");
  EXPECT_EQ(platform.systemLog.lines(),
            std::vector<std::string>{"[SprigFinder] Successfully wrote file to " + created->path()});
  EXPECT_TRUE(platform.workspace.revealed.empty()) << "the reveal waits for the main queue";
  platform.mainQueue.runPending();
  EXPECT_EQ(platform.workspace.revealed, std::vector<FileURL>{*created});
  EXPECT_EQ(platform.creations.files, platform.workspace.revealed);
  EXPECT_TRUE(platform.application.shown.empty());
  EXPECT_EQ(test::namesIn(*platform.users.home), std::vector<std::string>{}) << "no line in the log file";
}

TEST_F(Creator, RendersNameAndContentOfOneInstant) {
  platform.clock.step = std::chrono::hours(30);
  auto item = notes();
  item.filenamePattern = item.content = "{{datetime}}";
  const auto created = FileCreator::createFile(item, folder, {});
  ASSERT_TRUE(created);
  EXPECT_EQ(test::readFile(*created) + ".md", created->lastPathComponent());
}

TEST_F(Creator, PrefersUsableBase64ToTheText) {
  struct Row {
    std::optional<std::string> base64;
    std::string content;
  };
  const std::string bytes("{{name}}\0\xFF", 10);
  auto item = notes();
  item.content = "text of {{name}}";
  for (const auto& row :
       {Row{"e3tuYW1lfX0A/w==", bytes}, Row{"e3tu\r\nYW1l\tfX0A/w==\n", bytes}, Row{"", "text of n"},
        Row{std::nullopt, "text of n"}, Row{"e3t", "text of n"}, Row{"!!!", ""}}) {
    item.contentBase64 = row.base64;
    const auto created = FileCreator::createFile(item, folder, "n");
    ASSERT_TRUE(created);
    EXPECT_EQ(test::readFile(*created), row.content) << row.base64.value_or("absent");
    unlink(created->path().c_str());
  }
}

TEST_F(Creator, ExplainsWhyItCouldNotWrite) {
  struct Row {
    Error error;
    const char* title;
    std::string text;
  };
  const std::string permission = "You don't have permission to write files in this directory.";
  const std::string other = "The folder may be read-only or unavailable.";
  for (const auto& row : {
           Row{{"NSCocoaErrorDomain", 513, "D"}, "Permission Denied", permission},
           Row{{"NSCocoaErrorDomain", 512, "D"}, "Couldn't create the file.", other},
           Row{{"NSCocoaErrorDomain", EEXIST, "D"}, "Couldn't create the file.", other},
           Row{{"NSPOSIXErrorDomain", 513, "D\nE"}, "Couldn't create the file.", other},
       }) {
    platform.files.refusals = {{"first", 1, "dropped"}, row.error};
    platform.application.activations.clear();
    EXPECT_EQ(FileCreator::createFile(notes(), folder, "a"), std::nullopt);
    EXPECT_EQ(platform.systemLog.takeLines(),
              std::vector<std::string>{"[SprigFinder] FileCreator error: " + row.error.description});
    EXPECT_TRUE(platform.application.activations.empty()) << "later, also on the main thread";
    platform.mainQueue.runPending();
    const auto& alert = platform.application.shown.back();
    EXPECT_EQ(alert.messageText, row.title);
    EXPECT_EQ(alert.informativeText, row.text + "\n\nTechnical details:\n" + row.error.description);
    EXPECT_EQ(alert.style, platform::AlertStyle::warning);
    ASSERT_EQ(alert.buttons.size(), 1U);
    EXPECT_EQ(alert.buttons[0].title, "Close");
    EXPECT_EQ(platform.application.activations, std::vector<std::string>{"activateIgnoringOtherApps"});
  }
  EXPECT_TRUE(platform.workspace.revealed.empty());
}

TEST_F(Creator, WritesDirectlyWhereAnAtomicWriteIsRefused) {
  platform.files.refusals = {{"first", 1, "dropped"}};
  EXPECT_TRUE(FileCreator::createFile(notes(), folder, "a"));
  EXPECT_EQ(platform.files.attempts, "prepared direct ");
  EXPECT_EQ(contentOf("a.md"), "# a in Projects\n");
  platform.mainQueue.runPending();
  EXPECT_TRUE(platform.application.shown.empty());
}

TEST_F(Creator, LosesNothingWhicheverSystemCallFails) {
  const auto mine = platform.makeFile("Projects/a.md", "mine");
  for (const int code : {ENOSPC, EDQUOT, EACCES, EIO, EINTR}) {
    for (int failing = 1;; ++failing) {
      platform.calls->failCall(failing, code);
      const auto created = FileCreator::createFile(notes(), folder, "a");
      if (platform.calls->made < failing) break;
      EXPECT_EQ(test::readFile(mine), "mine");
      ASSERT_TRUE(created) << "there is another way";
      EXPECT_EQ(test::namesIn(folder).size(), 2U) << "a temporary file, or a partial one";
      unlink(created->path().c_str());
    }
    unlink((folder.path() + "/a 2.md").c_str());
  }
}

TEST_F(Creator, ReplacesNothingThatComesWhileTheNameIsChosen) {
  platform.makeFile("Projects/a.md", "theirs");
  struct Row {
    bool canRefuseToReplace, canLink, isDirect;
  };
  for (const auto& row :
       {Row{true, true, false}, Row{false, true, false}, Row{false, false, false}, Row{true, true, true}}) {
    platform.calls->canRefuseToReplace = row.canRefuseToReplace;
    platform.calls->canLink = row.canLink;
    if (row.isDirect) platform.files.refusals = {{"no temporary file", 1, ""}};
    platform.files.attempts.clear();
    int asked = 0;
    platform.files.imaginedEntries = [&](std::string_view name) { return name == "a.md" && asked++ > 1; };
    EXPECT_EQ(FileCreator::createFile(notes(), folder, "a"), folder.appendingPath("a 2.md"));
    EXPECT_EQ(platform.files.attempts.starts_with("prepared direct"), row.isDirect);
    EXPECT_EQ(contentOf("a.md"), "theirs");
    EXPECT_EQ(test::namesIn(folder), (std::vector<std::string>{"a 2.md", "a.md"}));
    unlink((folder.path() + "/a 2.md").c_str());
  }
}

TEST_F(Creator, ReplacesALinkWithoutATargetButNotWhatComesInItsPlace) {
  const auto file = folder.appendingPath("a.md");
  for (const bool canExchange : {true, false}) {
    platform.calls->canRefuseToReplace = canExchange;
    ASSERT_EQ(symlink("missing", file.path().c_str()), 0);
    EXPECT_EQ(FileCreator::createFile(notes(), folder, "a"), file);
    EXPECT_EQ(test::namesIn(folder), std::vector<std::string>{"a.md"});
    EXPECT_EQ(unlink(file.path().c_str()), 0);
  }
  platform.calls->canRefuseToReplace = true;
  ASSERT_EQ(symlink("missing", file.path().c_str()), 0);
  platform.calls->meanwhile = [&] {
    unlink(file.path().c_str());
    test::writeFile(file, "theirs");
  };
  EXPECT_EQ(FileCreator::createFile(notes(), folder, "a"), folder.appendingPath("a 2.md"));
  EXPECT_EQ(contentOf("a.md"), "theirs");
  EXPECT_EQ(test::namesIn(folder), (std::vector<std::string>{"a 2.md", "a.md"}));
}

TEST_F(Creator, GivesUpANameThatIsTakenEachTimeButNotBeforeTheClockMovesOn) {
  platform.clock.step = std::chrono::milliseconds(300);
  const auto theirs = platform.makeFile("Projects/a 1794819902.md", "theirs");
  platform.files.imaginedEntries = [](std::string_view) { return true; };
  EXPECT_EQ(FileCreator::createFile(notes(), folder, "a"), folder.appendingPath("a 1794819903.md"));
  platform.files.imaginedEntries = [](std::string_view) { return false; };
  EXPECT_EQ(FileCreator::createFile(notes(), folder, "a 1794819902"), std::nullopt);
  platform.mainQueue.runPending();
  EXPECT_TRUE(platform.application.shown.at(0).informativeText.starts_with(
      "The folder may be read-only or unavailable.\n\nTechnical details:\nFor three seconds each name"));
  EXPECT_EQ(test::readFile(theirs), "theirs");
  EXPECT_EQ(test::namesIn(folder).size(), 2U);
}

TEST_F(Creator, NeverLeavesTheFolderAndSaysFirstWhatIsWrongWithTheName) {
  const auto outside = platform.makeFile("outside.md", "mine");
  const std::string slash = "A file name can't hold \"/\".";
  const std::string huge(2'000'000, 'n');
  struct Row {
    std::string name, reason, namedAs;
  };
  for (const auto& row :
       {Row{"../outside.md", slash, "../outside.md"}, Row{"a/b.md", slash, "a/b.md"},
        Row{"..", "A file can't be named \"..\"", ".."}, Row{"/etc/x.md", slash, "/etc/x.md"},
        Row{std::string("a\0b.md", 6), "A file name can't hold the character NUL", "a\u2400b.md"},
        Row{huge, "Can't write \"", "nnn\u2026nnn"}}) {
    EXPECT_EQ(FileCreator::createFile(notes(), folder, row.name), std::nullopt) << row.reason;
    platform.mainQueue.runPending();
    const auto& alert = platform.application.shown.back();
    EXPECT_EQ(alert.messageText, "Couldn't create the file.");
    EXPECT_NE(alert.informativeText.find("\nTechnical details:\n" + row.reason), std::string::npos);
    EXPECT_NE(alert.informativeText.find(row.namedAs), std::string::npos) << alert.informativeText;
    EXPECT_LT(alert.informativeText.size(), 10'000U);
    EXPECT_NE(platform.systemLog.takeLines().at(0).find("FileCreator error: " + row.reason),
              std::string::npos);
  }
  platform.process.variables["USER"] = "";
  for (const auto& [pattern, reason] : {std::pair{"{{author}}", "be empty"}, {".", "be named \".\","}}) {
    TemplateItem nameless;
    nameless.filenamePattern = pattern;
    EXPECT_EQ(FileCreator::createFile(nameless, folder, {}), std::nullopt);
    EXPECT_NE(platform.systemLog.takeLines().at(0).find(reason), std::string::npos) << pattern;
  }
  EXPECT_EQ(test::readFile(outside), "mine");
  EXPECT_EQ(test::namesIn(folder), std::vector<std::string>{});
}

TEST_F(Creator, RefusesTextThatIsNotUnicode) {
  const auto strange = platform.makeFolder("strange \xFF");
  EXPECT_EQ(FileCreator::createFile(notes(), strange, "a.md"), std::nullopt);
  EXPECT_TRUE(platform.systemLog.lines().empty());
  platform.mainQueue.runPending();
  EXPECT_EQ(platform.application.shown.back().messageText, "Encoding error");
  EXPECT_EQ(platform.application.shown.back().informativeText, "Unable to encode template content.");
  auto usable = notes();
  usable.contentBase64 = "Zg==";
  EXPECT_TRUE(FileCreator::createFile(usable, strange, "a.md")) << "its text isn't used";
  usable = notes();
  usable.content = "no placeholder";
  EXPECT_TRUE(FileCreator::createFile(usable, strange, "a.md"));
}

TEST(Base64, SkipsStrangersAndRefusesBrokenGroups) {
  const std::string all = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  EXPECT_EQ(encodeBase64(decodeBase64(all).value()), all);
  struct Row {
    const char* text;
    std::optional<std::string> bytes;
  };
  for (const auto& row : {Row{"", ""}, Row{"Zg==", "f"}, Row{"Zm8=", "fo"}, Row{"Zm9vYg==", "foob"},
                          Row{" Z m\n9\tv!-_", "foo"}, Row{"+/+/", "\xFB\xFF\xBF"}, Row{"Z", {}},
                          Row{"Zg", {}}, Row{"Zg=", {}}, Row{"Zm8", {}}, Row{"Zg===", {}}, Row{"Zm9v=", {}},
                          Row{"Zg==Zg==", {}}, Row{"=", {}}, Row{"Z===", {}}}) {
    EXPECT_EQ(decodeBase64(row.text), row.bytes) << row.text;
    EXPECT_EQ(row.bytes ? decodeBase64(encodeBase64(*row.bytes)) : row.bytes, row.bytes) << row.text;
  }
}

}  // namespace
}  // namespace sprig
