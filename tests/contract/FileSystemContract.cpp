// SPDX-License-Identifier: GPL-3.0-or-later

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "contract/Process.h"
#include "contract/Worlds.h"
#include "platform/FileSystem.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {
namespace {

/// The two ways to a new file.
enum class Way { published, direct };
constexpr auto bothWays = {Way::published, Way::direct};

/// What every file system owes. No test may leak a descriptor.
class FileSystemContract : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(openDescriptors(), descriptorsBefore); }

  std::optional<platform::Error> create(std::string_view data, std::string_view path, Way way) {
    const auto file = folder / path;
    if (way == Way::direct) return files->createFile(data, file);
    const auto prepared = files->prepareFile(data, file.deletingLastPathComponent());
    return prepared ? (*prepared)->publish(file.lastPathComponent()) : prepared.error();
  }
  auto read(std::string_view name) { return files->contentsOfFile(folder / name); }
  void link(const std::string& target, std::string_view name) {
    std::filesystem::create_symlink(target, (folder / name).path());
  }

  const std::unique_ptr<platform::FileSystem> files = makeFileSystem();
  TemporaryFolder folder;
  const std::size_t descriptorsBefore = openDescriptors();
};

TEST_F(FileSystemContract, WritesWholeFilesOfAnySizeAndNameAndLeavesNothingBesideThem) {
  const std::string longest(255, 'n');
  for (const auto way : bothWays) {
    for (const auto& content : {std::string("text\n"), std::string(), std::string(3'000'001, '\0')}) {
      for (const auto& name : {longest, std::string("\xff\xfe \n%s")}) {
        EXPECT_FALSE(create(content, name, way));
        EXPECT_EQ(read(name).value(), content);
        EXPECT_EQ(namesIn(folder.url()), std::vector<std::string>{name});
        std::filesystem::remove((folder / name).path());
      }
    }
    const auto error = create("x", longest + "n", way).value();
    EXPECT_EQ(error.domain, platform::POSIXErrorDomain);
    EXPECT_EQ(error.code, ENAMETOOLONG);
    EXPECT_NE(error.description.find(longest), std::string::npos);
  }
  EXPECT_EQ(files->prepareFile("x", folder.url()).value()->publish("../x").value().code, EINVAL);
  EXPECT_TRUE(files->prepareFile("never published", folder.url()));
  EXPECT_EQ(namesIn(folder.url()), std::vector<std::string>{});
}

TEST_F(FileSystemContract, GivesNewFilesAndFoldersTheModeThatTheUmaskLeaves) {
  for (const mode_t mask : {022U, 077U, 0U}) {
    const mode_t before = ::umask(mask);
    const std::string name = std::to_string(mask);
    EXPECT_FALSE(create("x", name + "published", Way::published));
    EXPECT_FALSE(create("x", name + "direct", Way::direct));
    EXPECT_FALSE(files->appendData("x", folder / (name + "log")));
    EXPECT_FALSE(files->createDirectory(folder / (name + "folder/in")));
    ::umask(before);
    EXPECT_EQ(modeOf(folder / (name + "published")), 0666U & ~mask);
    EXPECT_EQ(modeOf(folder / (name + "direct")), 0666U & ~mask);
    EXPECT_EQ(modeOf(folder / (name + "log")), 0600U) << "a log is its owner's";
    EXPECT_EQ(modeOf(folder / (name + "folder/in")), 0777U & ~mask);
  }
}

TEST_F(FileSystemContract, NeverReplacesWhatANewFileFindsUnderItsNameButALinkWithoutATarget) {
  writeFile(folder / "file", "kept");
  std::filesystem::create_directories((folder / "folder/in").path());
  std::filesystem::create_directory((folder / "empty").path());
  ::mkfifo((folder / "fifo").path().c_str(), 0600);
  link("file", "link");
  link("missing", "dangling");
  const auto names = namesIn(folder.url());
  for (const auto* taken : {"file", "folder", "empty", "fifo", "link"}) {
    for (const auto way : bothWays) EXPECT_EQ(create("new", taken, way).value().code, EEXIST) << taken;
  }
  EXPECT_EQ(create("new", "dangling", Way::direct).value().code, ELOOP);
  EXPECT_EQ(namesIn(folder.url()), names);
  EXPECT_FALSE(create("new", "dangling", Way::published));
  EXPECT_FALSE(std::filesystem::is_symlink((folder / "dangling").path()));
  EXPECT_EQ(readFile(folder / "dangling"), "new");
  EXPECT_EQ(namesIn(folder.url()), names) << "nothing at the link's target, and nothing left";
  EXPECT_EQ(readFile(folder / "file"), "kept");
  for (const auto* target : {"file/below", "missing/file"}) {
    for (const auto way : bothWays) EXPECT_EQ(create("x", target, way).value().domain, "NSPOSIXErrorDomain");
  }
}

TEST_F(FileSystemContract, TellsWhatStandsAtALocationOnceLinksAreFollowed) {
  using Kind = platform::EntryKind;
  std::filesystem::create_directory((folder / "folder").path());
  writeFile(folder / "file", "");
  link("folder", "toFolder");
  link("file", "toFile");
  link("nowhere", "dangling");
  link("loop", "loop");
  const auto open = files->openFolder(folder.url());
  const std::vector<std::pair<std::string, Kind>> rows = {
      {"folder", Kind::directory}, {"file", Kind::other},    {"toFolder", Kind::directory},
      {"toFile", Kind::other},     {"dangling", Kind::none}, {"loop", Kind::none},
      {"missing", Kind::none}};
  for (const auto& [name, kind] : rows) {
    EXPECT_EQ(files->entryKind(folder / name), kind) << name;
    EXPECT_EQ(open->hasEntry(name), kind != Kind::none) << name;
  }
  EXPECT_EQ(files->entryKind(folder / "file/below"), Kind::none);
}

TEST_F(FileSystemContract, AnswersForTheFolderOpenedAndOnlyForNamesInIt) {
  writeFile(folder / "file", "");
  std::filesystem::create_directory((folder / "folder").path());
  writeFile(folder / "folder/in", "");
  const auto open = files->openFolder(folder / "folder");
  std::filesystem::rename((folder / "folder").path(), (folder / "moved").path());
  EXPECT_TRUE(open->hasEntry("in"));
  using std::string_view_literals::operator""sv;
  for (const auto name : {"."sv, ".."sv, ""sv, "../file"sv, "in/"sv, "in\0"sv, "/"sv}) {
    EXPECT_FALSE(open->hasEntry(name)) << name;
  }
  EXPECT_FALSE(open->hasEntry(std::string(5000, 'n')));
  for (const auto* closed : {"missing", "file"}) {
    EXPECT_FALSE(files->openFolder(folder / closed)->hasEntry("file")) << closed;
  }
}

TEST_F(FileSystemContract, ReadsRegularFilesOnlyAndNeverWaits) {
  std::filesystem::create_directory((folder / "folder").path());
  ::mkfifo((folder / "fifo").path().c_str(), 0600);
  writeFile(folder / "huge", "");
  std::filesystem::resize_file((folder / "huge").path(), std::uintmax_t{1} << 40);
  link("/dev/zero", "device");
  link("/proc/self/status", "sizeless");
  const std::vector<std::pair<std::string, int>> rows = {
      {"folder", EISDIR}, {"fifo", EINVAL}, {"device", EINVAL}, {"huge", EFBIG}, {"missing", ENOENT}};
  for (const auto& [name, code] : rows) {
    const auto error = read(name).error();
    EXPECT_EQ(error.domain, platform::POSIXErrorDomain);
    EXPECT_EQ(error.code, code) << error.description;
  }
  EXPECT_NE(read("sizeless").value().find("Threads:"), std::string::npos);
}

TEST_F(FileSystemContract, AppendsToFilesAndMakesMissingOnesAlsoWhereALinkLeads) {
  link("log", "link");
  EXPECT_FALSE(files->appendData("one\n", folder / "link"));
  EXPECT_FALSE(files->appendData("two\n", folder / "link"));
  EXPECT_EQ(readFile(folder / "log"), "one\ntwo\n");
  EXPECT_EQ(files->appendData("x", folder / "missing/log").value().code, ENOENT);
  EXPECT_EQ(files->appendData("x", folder.url()).value().code, EISDIR);
  EXPECT_EQ(namesIn(folder.url()), (std::vector<std::string>{"link", "log"}));
}

TEST_F(FileSystemContract, CreatesFoldersWithTheirParentsUnlessAFileIsInTheWay) {
  EXPECT_FALSE(files->createDirectory(folder / "a/b/c"));
  EXPECT_FALSE(files->createDirectory(folder / "a/b/c"));
  EXPECT_TRUE(std::filesystem::is_directory((folder / "a/b/c").path()));
  writeFile(folder / "file", "kept");
  link("nowhere", "dangling");
  for (const auto* inTheWay : {"file", "file/below/it", "dangling"}) {
    const auto error = files->createDirectory(folder / inTheWay);
    EXPECT_EQ(error.value().domain, platform::POSIXErrorDomain) << inTheWay;
  }
  EXPECT_EQ(readFile(folder / "file"), "kept");
}

TEST_F(FileSystemContract, ListsEveryNameAndResolvesEveryLink) {
  for (const auto* name : {".hidden", "b", "\xff"}) writeFile(folder / name, "");
  link(".", "self");
  auto names = files->contentsOfDirectory(folder.url()).value();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{".hidden", "b", "self", "\xff"}));
  EXPECT_FALSE(files->contentsOfDirectory(folder / "b"));
  EXPECT_FALSE(files->contentsOfDirectory(folder / "missing"));
  const auto real = files->resolvingSymlinks(folder.url());
  EXPECT_EQ(files->resolvingSymlinks(folder / "self/self/b"), real.appendingPath("b"));
  EXPECT_EQ(files->resolvingSymlinks(folder / "missing/x"), folder / "missing/x");
}

TEST_F(FileSystemContract, ReportsMissingPermissionToWriteAsSuch) {
  using std::filesystem::perms;
  writeFile(folder / "file", "kept");
  std::filesystem::permissions(folder.url().path(), perms(0555));
  std::filesystem::permissions((folder / "file").path(), perms(0));
  const auto isPermission = [](const std::optional<platform::Error>& error) {
    return error && error->domain == platform::CocoaErrorDomain &&
           error->code == platform::FileWriteNoPermissionError &&
           error->description.find("Permission denied (EACCES)") != std::string::npos;
  };
  EXPECT_TRUE(asOrdinaryUser([&] {
    const auto content = read("file");
    return isPermission(create("x", "new", Way::published)) &&
           isPermission(create("x", "new", Way::direct)) &&
           isPermission(files->appendData("x", folder / "file")) &&
           isPermission(files->createDirectory(folder / "folder/in")) && !content &&
           content.error().domain == platform::POSIXErrorDomain && content.error().code == EACCES;
  }));
  std::filesystem::permissions(folder.url().path(), perms(0755));
  std::filesystem::permissions((folder / "file").path(), perms(0600));
  EXPECT_EQ(readFile(folder / "file"), "kept");
  EXPECT_EQ(namesIn(folder.url()), std::vector<std::string>{"file"});
}

}  // namespace
}  // namespace sprig::test
