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

using platform::WriteOption;

/// What every file system owes. No test may leak a descriptor.
class FileSystemContract : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(openDescriptors(), descriptorsBefore); }

  auto write(std::string_view data, std::string_view name, WriteOption option) {
    return files->writeData(data, folder / name, option);
  }
  auto read(std::string_view name) { return files->contentsOfFile(folder / name); }
  void link(const std::string& target, std::string_view name) {
    std::filesystem::create_symlink(target, (folder / name).path());
  }
  mode_t modeOf(std::string_view name) {
    struct stat status = {};
    ::stat((folder / name).path().c_str(), &status);
    return status.st_mode & 07777U;
  }

  const std::unique_ptr<platform::FileSystem> files = makeFileSystem();
  TemporaryFolder folder;
  const std::size_t descriptorsBefore = openDescriptors();
};

TEST_F(FileSystemContract, WritesWholeFilesOfAnySizeAndNameAndLeavesNothingBesideThem) {
  const std::string longest(255, 'n');
  for (const auto option : {WriteOption::atomic, WriteOption::none}) {
    for (const auto& content : {std::string("text\n"), std::string(), std::string(3'000'001, '\0')}) {
      for (const auto& name : {longest, std::string("\xff\xfe \n%s")}) {
        EXPECT_FALSE(write(content, name, option));
        EXPECT_EQ(read(name).value(), content);
      }
    }
    const auto error = write("x", longest + "n", option).value();
    EXPECT_EQ(error.domain, platform::POSIXErrorDomain);
    EXPECT_EQ(error.code, ENAMETOOLONG);
    EXPECT_NE(error.description.find(longest), std::string::npos);
    EXPECT_EQ(namesIn(folder.url()).size(), 2U);
    std::filesystem::remove((folder / longest).path());
    std::filesystem::remove((folder / "\xff\xfe \n%s").path());
  }
}

TEST_F(FileSystemContract, GivesNewFilesAndFoldersTheModeThatTheUmaskLeaves) {
  for (const mode_t mask : {022U, 077U}) {
    const mode_t before = ::umask(mask);
    const std::string name = std::to_string(mask);
    EXPECT_FALSE(write("x", name + "atomic", WriteOption::atomic));
    EXPECT_FALSE(write("x", name + "plain", WriteOption::none));
    EXPECT_FALSE(files->createDirectory(folder / (name + "folder/in")));
    ::umask(before);
    EXPECT_EQ(modeOf(name + "atomic"), 0666U & ~mask);
    EXPECT_EQ(modeOf(name + "plain"), 0666U & ~mask);
    EXPECT_EQ(modeOf(name + "folder/in"), 0777U & ~mask);
  }
}

TEST_F(FileSystemContract, NeverWritesThroughALink) {
  for (const std::string target : {"target", "missing"}) {
    writeFile(folder / "target", "kept");
    link(target, "link");
    EXPECT_TRUE(write("new", "link", WriteOption::none));
    EXPECT_FALSE(write("new", "link", WriteOption::atomic));
    EXPECT_FALSE(std::filesystem::is_symlink((folder / "link").path()));
    EXPECT_EQ(readFile(folder / "link"), "new");
    EXPECT_EQ(readFile(folder / "target"), "kept");
    EXPECT_EQ(readFile(folder / "missing"), "(none)");
    std::filesystem::remove((folder / "link").path());
  }
}

TEST_F(FileSystemContract, RefusesTargetsThatCantBeFilesAndLeavesThemAlone) {
  std::filesystem::create_directories((folder / "full/folder").path());
  writeFile(folder / "file", "kept");
  ::mkfifo((folder / "fifo").path().c_str(), 0600);
  for (const auto* target : {"full", "file/below", "missing/file"}) {
    for (const auto option : {WriteOption::atomic, WriteOption::none}) {
      EXPECT_EQ(write("x", target, option).value().domain, platform::POSIXErrorDomain) << target;
    }
  }
  EXPECT_EQ(write("x", "fifo", WriteOption::none).value().code, ENXIO);
  EXPECT_EQ(namesIn(folder.url()), (std::vector<std::string>{"fifo", "file", "full"}));
  EXPECT_EQ(readFile(folder / "file"), "kept");
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

TEST_F(FileSystemContract, AppendsToExistingFilesOnly) {
  writeFile(folder / "log", "one\n");
  link("log", "link");
  EXPECT_FALSE(files->appendData("two\n", folder / "link"));
  EXPECT_EQ(readFile(folder / "log"), "one\ntwo\n");
  EXPECT_EQ(files->appendData("x", folder / "missing").value().code, ENOENT);
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
    return isPermission(write("x", "new", WriteOption::atomic)) &&
           isPermission(write("x", "new", WriteOption::none)) &&
           isPermission(write("x", "file", WriteOption::atomic)) &&
           isPermission(write("x", "file", WriteOption::none)) &&
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
