// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/TemplateEngine.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "support/TestPlatform.h"

namespace sprig {
namespace {

TemplateItem templateOf(const std::string& pattern, const std::string& extension,
                        const std::string& content = "") {
  TemplateItem item;
  item.filenamePattern = pattern;
  item.extensionName = extension;
  item.content = content;
  return item;
}

TEST(TemplateEngine, CompletesATypedNameWithTheExtensionUnlessItHasOne) {
  test::TestPlatform platform;
  struct Row {
    const char* typed;
    const char* extension;
    const char* filename;
    const char* name;
  };
  for (const auto& row :
       {Row{"  Report  ", ".md", "Report.md", "Report"}, Row{"\u3000Report\n", ".md", "Report.md", "Report"},
        Row{"Report.md", ".md", "Report.md", "Report"}, Row{"Report.txt", ".md", "Report.txt", "Report"},
        Row{"v1.2 notes", ".md", "v1.2 notes", "v1"}, Row{"Report.MD", ".md", "Report.MD", "Report"},
        Row{"Report", "md", "Report.md", "Report"}, Row{"Readmd", "md", "Readmd", "Readmd"},
        Row{"Report", "", "Report", "Report"}, Row{"{{date}}", ".md", "{{date}}.md", "{{date}}"},
        Row{".env", ".env", ".env", ".env"}, Row{"a/b", ".md", "a/b.md", "a/b"},
        Row{" \t\u2003\n", ".md", "Untitled x.md", "Untitled x"},
        Row{"", ".md", "Untitled x.md", "Untitled x"}}) {
    const auto rendered = TemplateEngine::render(
        templateOf("{{name}} x", row.extension, "{{name}}|{{filename}}"), row.typed, "f", "f");
    EXPECT_EQ(rendered.filename, row.filename);
    EXPECT_EQ(rendered.content, std::string(row.name) + "|" + row.filename);
  }
}

TEST(TemplateEngine, SuggestsANameFromThePattern) {
  test::TestPlatform platform;
  struct Row {
    const char* pattern;
    const char* extension;
    std::optional<std::string> folder;
    const char* expected;
  };
  for (const auto& row :
       {Row{"Meeting Notes {{date}}.md", ".md", {}, "Meeting Notes 2026-11-16.md"},
        Row{"Log {{time}}", ".txt", {}, "Log 09:05:02.txt"}, Row{" {{name}}\n", ".tsx", {}, "Untitled.tsx"},
        Row{"   ", ".txt", {}, "Untitled.txt"}, Row{"", "", {}, "Untitled"},
        Row{"{{filename}}", ".md", {}, "{{filename}}.md"}, Row{"{{folder}}", ".md", {}, ".md"},
        Row{"{{project}}", ".md", "my.app", "my.app"}, Row{"{{project}}", "", " x ", " x "},
        Row{"{{ project }}", ".md", "app", "app.md"}, Row{"notes", "md", {}, "notes.md"},
        Row{".env", ".env", {}, ".env"}}) {
    EXPECT_EQ(TemplateEngine::renderSuggestedFilename(templateOf(row.pattern, row.extension), row.folder, {}),
              row.expected);
  }
}

TEST(TemplateEngine, SplitsNamesAtTheLastDotButNotAtALeadingOne) {
  struct Row {
    const char* name;
    FilenameComponents parts;
  };
  for (const auto& row :
       {Row{"Button.tsx", {"Button", ".tsx"}}, Row{"archive.tar.gz", {"archive.tar", ".gz"}},
        Row{".gitignore", {".gitignore", ""}}, Row{".env.local", {".env", ".local"}},
        Row{"Makefile", {"Makefile", ""}}, Row{"notes.", {"notes", "."}}, Row{"  a.txt\u2028", {"a", ".txt"}},
        Row{"", {"", ""}}, Row{".", {".", ""}}, Row{"..", {".", "."}}, Row{"a. ", {"a", "."}}}) {
    EXPECT_EQ(TemplateEngine::parseFilenameComponents(row.name), row.parts) << row.name;
  }
}

struct Collision : testing::Test {
  test::TestPlatform platform;
  platform::FileURL folder = platform.makeFolder("target");

  std::string resolve(const std::string& name, const std::vector<std::string>& taken) {
    for (const auto& entry : taken) platform.makeFile("target/" + entry);
    auto free = TemplateEngine::resolveCollision(folder, name);
    for (const auto& entry : taken) unlink((folder.path() + "/" + entry).c_str());
    return free;
  }
};

TEST_F(Collision, IsSolvedByTheNextNumber) {
  struct Row {
    std::string name;
    std::vector<std::string> taken;
    std::string expected;
  };
  for (const auto& row :
       {Row{"report.md", {}, "report.md"}, Row{"report.md", {"report.md"}, "report 2.md"},
        Row{"report.md", {"report.md", "report 2.md", "report 3.md"}, "report 4.md"},
        Row{"report.md", {"report.md", "report 3.md"}, "report 2.md"},
        Row{"notes 3.md", {"notes 3.md"}, "notes 4.md"}, Row{"a 0.md", {"a 0.md"}, "a 1.md"},
        Row{"Meeting Notes 2026-11-16.md", {"Meeting Notes 2026-11-16.md"}, "Meeting Notes 2026-11-16 2.md"},
        Row{".gitignore", {".gitignore"}, ".gitignore 2"},
        Row{"archive.tar.gz", {"archive.tar.gz"}, "archive.tar 2.gz"},
        Row{"Makefile", {"Makefile"}, "Makefile 2"}, Row{" spaced.txt ", {}, " spaced.txt "},
        Row{" spaced.txt ", {" spaced.txt "}, "spaced 2.txt"},
        Row{"x 9998.txt", {"x 9998.txt"}, "x 9999.txt"},
        Row{"x 9999.txt", {"x 9999.txt"}, "x 1794819902.txt"}, Row{"a 3\n.txt", {"a 3\n.txt"}, "a 3\n 2.txt"},
        Row{"v 9223372036854775807", {"v 9223372036854775807"}, "v 9223372036854775807 2"},
        Row{"..", {}, ".."}, Row{"a/b", {}, "a/b"}, Row{"", {}, ""}}) {
    EXPECT_EQ(resolve(row.name, row.taken), row.expected);
  }
}

TEST_F(Collision, IsGivenUpAfter9999) {
  std::vector<std::string> asked;
  platform.files.imaginedEntries = [&](std::string_view name) {
    asked.emplace_back(name);
    return name != "a 9999";
  };
  EXPECT_EQ(TemplateEngine::resolveCollision(folder, "a"), "a 9999");
  EXPECT_EQ(asked.size(), 9999U) << "the name itself and the numbers from 2";
  platform.files.imaginedEntries = [](std::string_view) { return true; };
  EXPECT_EQ(TemplateEngine::resolveCollision(folder, "a"), "a 1794819902");
  EXPECT_EQ(TemplateEngine::resolveCollision(folder, "a 9998"), "a 1794819902");
}

}  // namespace
}  // namespace sprig
