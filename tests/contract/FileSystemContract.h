#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <thread>

#include "contract/Process.h"
#include "platform/FileSystem.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {

/// What every file system owes. `World` has `platform::FileSystem& files()`. No test may leak a descriptor.
template <typename World>
class FileSystemContract : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(openDescriptors(), descriptorsBefore); }

  platform::FileSystem& files() { return world.files(); }
  void link(const std::string& target, std::string_view name) {
    std::filesystem::create_symlink(target, (folder / name).path());
  }
  mode_t modeOf(std::string_view name) {
    struct stat status = {};
    ::stat((folder / name).path().c_str(), &status);
    return status.st_mode & 07777U;
  }

  World world;
  TemporaryFolder folder;
  const std::size_t descriptorsBefore = openDescriptors();
};

TYPED_TEST_SUITE_P(FileSystemContract);

TYPED_TEST_P(FileSystemContract, WritesWholeFilesEitherWayAndLeavesNothingBesideThem) {
  using Option = platform::WriteOption;
  const std::string large(3'000'001, '\0');
  for (const auto option : {Option::atomic, Option::none}) {
    for (const std::string& content : {std::string("text\n"), std::string(), large, std::string("short")}) {
      EXPECT_FALSE(this->files().writeData(content, this->folder / "a", option));
      EXPECT_EQ(this->files().contentsOfFile(this->folder / "a").value(), content);
    }
    EXPECT_EQ(namesIn(this->folder.url()), std::vector<std::string>{"a"});
    std::filesystem::remove((this->folder / "a").path());
  }
}

TYPED_TEST_P(FileSystemContract, GivesNewFilesAndFoldersTheModeThatTheUmaskLeaves) {
  using Option = platform::WriteOption;
  for (const mode_t mask : {022U, 027U, 077U}) {
    const ScopedUmask scope(mask);
    const std::string name = std::to_string(mask);
    EXPECT_FALSE(this->files().writeData("x", this->folder / (name + "atomic"), Option::atomic));
    EXPECT_FALSE(this->files().writeData("x", this->folder / (name + "plain"), Option::none));
    EXPECT_FALSE(this->files().createDirectory(this->folder / (name + "folder/in")));
    EXPECT_EQ(this->modeOf(name + "atomic"), 0666U & ~mask);
    EXPECT_EQ(this->modeOf(name + "plain"), 0666U & ~mask);
    EXPECT_EQ(this->modeOf(name + "folder/in"), 0777U & ~mask);
  }
}

TYPED_TEST_P(FileSystemContract, WritesTheLongestNamesAndAnyBytesInThem) {
  using Option = platform::WriteOption;
  const std::string longest(255, 'n');
  for (const auto& name : {longest, std::string("\xff\xfe \n%s"), std::string("-rf *")}) {
    for (const auto option : {Option::atomic, Option::none}) {
      EXPECT_FALSE(this->files().writeData("x", this->folder / name, option));
    }
    EXPECT_TRUE(this->files().openFolder(this->folder.url())->hasEntry(name));
  }
  const auto error = this->files().writeData("x", this->folder / (longest + "n"), Option::atomic);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->domain, platform::POSIXErrorDomain);
  EXPECT_EQ(error->code, ENAMETOOLONG);
  EXPECT_NE(error->description.find(longest), std::string::npos);
  EXPECT_EQ(namesIn(this->folder.url()).size(), 3U);
}

TYPED_TEST_P(FileSystemContract, NeverWritesThroughALink) {
  using Option = platform::WriteOption;
  for (const std::string target : {"target", "missing"}) {
    writeFile(this->folder / "target", "kept");
    this->link(target, "link");
    EXPECT_TRUE(this->files().writeData("new", this->folder / "link", Option::none));
    EXPECT_EQ(readFile(this->folder / "missing"), "(none)");
    EXPECT_FALSE(this->files().writeData("new", this->folder / "link", Option::atomic));
    EXPECT_FALSE(std::filesystem::is_symlink((this->folder / "link").path()));
    EXPECT_EQ(readFile(this->folder / "link"), "new");
    EXPECT_EQ(readFile(this->folder / "target"), "kept");
    EXPECT_EQ(readFile(this->folder / "missing"), "(none)");
    std::filesystem::remove((this->folder / "link").path());
  }
}

TYPED_TEST_P(FileSystemContract, RefusesTargetsThatCantBeFilesAndLeavesThemAlone) {
  using Option = platform::WriteOption;
  std::filesystem::create_directories((this->folder / "full/folder").path());
  writeFile(this->folder / "file", "kept");
  ::mkfifo((this->folder / "fifo").path().c_str(), 0600);
  for (const auto* target : {"full", "file/below", "missing/file"}) {
    for (const auto option : {Option::atomic, Option::none}) {
      const auto error = this->files().writeData("x", this->folder / target, option);
      ASSERT_TRUE(error) << target;
      EXPECT_EQ(error->domain, platform::POSIXErrorDomain);
    }
  }
  EXPECT_EQ(this->files().writeData("x", this->folder / "fifo", Option::none).value().code, ENXIO);
  EXPECT_EQ(namesIn(this->folder.url()), (std::vector<std::string>{"fifo", "file", "full"}));
  EXPECT_EQ(readFile(this->folder / "file"), "kept");
}

TYPED_TEST_P(FileSystemContract, TellsWhatStandsAtALocationOnceLinksAreFollowed) {
  using Kind = platform::EntryKind;
  std::filesystem::create_directory((this->folder / "folder").path());
  writeFile(this->folder / "file", "");
  this->link("folder", "toFolder");
  this->link("file", "toFile");
  this->link("nowhere", "dangling");
  this->link("loop", "loop");
  const auto open = this->files().openFolder(this->folder.url());
  const std::vector<std::pair<std::string, Kind>> rows = {
      {"folder", Kind::directory}, {"file", Kind::other},    {"toFolder", Kind::directory},
      {"toFile", Kind::other},     {"dangling", Kind::none}, {"loop", Kind::none},
      {"missing", Kind::none}};
  for (const auto& [name, kind] : rows) {
    EXPECT_EQ(this->files().entryKind(this->folder / name), kind) << name;
    EXPECT_EQ(this->files().fileExists(this->folder / name), kind != Kind::none) << name;
    EXPECT_EQ(open->hasEntry(name), kind != Kind::none) << name;
  }
  EXPECT_EQ(this->files().entryKind(this->folder / "file/below"), Kind::none);
}

TYPED_TEST_P(FileSystemContract, AnswersForTheFolderOpenedAndOnlyForNamesInIt) {
  writeFile(this->folder / "file", "");
  std::filesystem::create_directory((this->folder / "folder").path());
  writeFile(this->folder / "folder/in", "");
  const auto open = this->files().openFolder(this->folder / "folder");
  std::filesystem::rename((this->folder / "folder").path(), (this->folder / "moved").path());
  EXPECT_TRUE(open->hasEntry("in"));
  using std::string_view_literals::operator""sv;
  for (const auto name : {"."sv, ".."sv, ""sv, "../file"sv, "in/"sv, "in\0"sv, "/"sv}) {
    EXPECT_FALSE(open->hasEntry(name)) << name;
  }
  EXPECT_FALSE(open->hasEntry(std::string(5000, 'n')));
  for (const auto* closed : {"missing", "file"}) {
    EXPECT_FALSE(this->files().openFolder(this->folder / closed)->hasEntry("file")) << closed;
  }
}

TYPED_TEST_P(FileSystemContract, ReadsRegularFilesOnlyAndNeverWaits) {
  std::filesystem::create_directory((this->folder / "folder").path());
  ::mkfifo((this->folder / "fifo").path().c_str(), 0600);
  writeFile(this->folder / "huge", "");
  std::filesystem::resize_file((this->folder / "huge").path(), std::uintmax_t{1} << 40);
  this->link("/dev/zero", "device");
  this->link("/proc/self/status", "sizeless");
  const std::vector<std::pair<std::string, int>> rows = {
      {"folder", EISDIR}, {"fifo", EINVAL}, {"device", EINVAL}, {"huge", EFBIG}, {"missing", ENOENT}};
  for (const auto& [name, code] : rows) {
    const auto content = this->files().contentsOfFile(this->folder / name);
    ASSERT_FALSE(content) << name;
    EXPECT_EQ(content.error().domain, platform::POSIXErrorDomain);
    EXPECT_EQ(content.error().code, code) << content.error().description;
  }
  EXPECT_NE(this->files().contentsOfFile(this->folder / "sizeless").value().find("Threads:"),
            std::string::npos);
}

TYPED_TEST_P(FileSystemContract, AppendsToExistingFilesOnly) {
  writeFile(this->folder / "log", "one\n");
  this->link("log", "link");
  EXPECT_FALSE(this->files().appendData("two\n", this->folder / "link"));
  EXPECT_EQ(readFile(this->folder / "log"), "one\ntwo\n");
  EXPECT_EQ(this->files().appendData("x", this->folder / "missing").value().code, ENOENT);
  EXPECT_EQ(this->files().appendData("x", this->folder.url()).value().code, EISDIR);
  EXPECT_EQ(namesIn(this->folder.url()), (std::vector<std::string>{"link", "log"}));
}

TYPED_TEST_P(FileSystemContract, CreatesFoldersWithTheirParentsUnlessAFileIsInTheWay) {
  EXPECT_FALSE(this->files().createDirectory(this->folder / "a/b/c"));
  EXPECT_FALSE(this->files().createDirectory(this->folder / "a/b/c"));
  EXPECT_TRUE(std::filesystem::is_directory((this->folder / "a/b/c").path()));
  writeFile(this->folder / "file", "kept");
  this->link("nowhere", "dangling");
  for (const auto* inTheWay : {"file", "file/below/it", "dangling"}) {
    const auto error = this->files().createDirectory(this->folder / inTheWay);
    ASSERT_TRUE(error) << inTheWay;
    EXPECT_EQ(error->domain, platform::POSIXErrorDomain);
  }
  EXPECT_EQ(readFile(this->folder / "file"), "kept");
}

TYPED_TEST_P(FileSystemContract, ListsEveryNameAndResolvesEveryLink) {
  for (const auto* name : {".hidden", "b", "\xff"}) writeFile(this->folder / name, "");
  this->link(".", "self");
  auto names = this->files().contentsOfDirectory(this->folder.url()).value();
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()),
            (std::set<std::string>{".hidden", "b", "self", "\xff"}));
  EXPECT_EQ(names.size(), 4U);
  EXPECT_FALSE(this->files().contentsOfDirectory(this->folder / "b"));
  EXPECT_FALSE(this->files().contentsOfDirectory(this->folder / "missing"));
  const auto real = this->files().resolvingSymlinks(this->folder.url());
  EXPECT_EQ(this->files().resolvingSymlinks(this->folder / "self/self/b"), real.appendingPath("b"));
  EXPECT_EQ(this->files().resolvingSymlinks(this->folder / "missing/x"), this->folder / "missing/x");
}

TYPED_TEST_P(FileSystemContract, ReportsMissingPermissionToWriteAsSuch) {
  using Option = platform::WriteOption;
  writeFile(this->folder / "file", "kept");
  std::filesystem::permissions(this->folder.url().path(), std::filesystem::perms(0555));
  std::filesystem::permissions((this->folder / "file").path(), std::filesystem::perms(0));
  const auto isPermission = [](const std::optional<platform::Error>& error) {
    return error && error->domain == platform::CocoaErrorDomain &&
           error->code == platform::FileWriteNoPermissionError &&
           error->description.find("Permission denied (EACCES)") != std::string::npos;
  };
  EXPECT_TRUE(asOrdinaryUser([&] {
    const auto read = this->files().contentsOfFile(this->folder / "file");
    return isPermission(this->files().writeData("x", this->folder / "new", Option::atomic)) &&
           isPermission(this->files().writeData("x", this->folder / "new", Option::none)) &&
           isPermission(this->files().writeData("x", this->folder / "file", Option::atomic)) &&
           isPermission(this->files().writeData("x", this->folder / "file", Option::none)) &&
           isPermission(this->files().appendData("x", this->folder / "file")) &&
           isPermission(this->files().createDirectory(this->folder / "folder/in")) && !read &&
           read.error().domain == platform::POSIXErrorDomain && read.error().code == EACCES;
  }));
  std::filesystem::permissions(this->folder.url().path(), std::filesystem::perms(0755));
  std::filesystem::permissions((this->folder / "file").path(), std::filesystem::perms(0600));
  EXPECT_EQ(readFile(this->folder / "file"), "kept");
  EXPECT_EQ(namesIn(this->folder.url()), std::vector<std::string>{"file"});
}

TYPED_TEST_P(FileSystemContract, ShowsReadersTheOldOrTheNewFileWhileItIsReplacedAtomically) {
  const std::string contents[] = {std::string(40'000, 'a'), std::string(60'000, 'b')};
  writeFile(this->folder / "file", contents[0]);
  std::thread writer([&] {
    for (std::size_t round = 0; round < 100; ++round) {
      EXPECT_FALSE(
          this->files().writeData(contents[round % 2], this->folder / "file", platform::WriteOption::atomic));
    }
  });
  for (int round = 0; round < 100; ++round) {
    const auto seen = this->files().contentsOfFile(this->folder / "file");
    EXPECT_TRUE(seen && (*seen == contents[0] || *seen == contents[1]));
  }
  writer.join();
}

REGISTER_TYPED_TEST_SUITE_P(FileSystemContract, WritesWholeFilesEitherWayAndLeavesNothingBesideThem,
                            GivesNewFilesAndFoldersTheModeThatTheUmaskLeaves,
                            WritesTheLongestNamesAndAnyBytesInThem, NeverWritesThroughALink,
                            RefusesTargetsThatCantBeFilesAndLeavesThemAlone,
                            TellsWhatStandsAtALocationOnceLinksAreFollowed,
                            AnswersForTheFolderOpenedAndOnlyForNamesInIt, ReadsRegularFilesOnlyAndNeverWaits,
                            AppendsToExistingFilesOnly, CreatesFoldersWithTheirParentsUnlessAFileIsInTheWay,
                            ListsEveryNameAndResolvesEveryLink, ReportsMissingPermissionToWriteAsSuch,
                            ShowsReadersTheOldOrTheNewFileWhileItIsReplacedAtomically);

}  // namespace sprig::test
