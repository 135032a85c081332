#include <gtest/gtest.h>

#include <unistd.h>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include "contract/Process.h"
#include "ports/linux/LinuxFileSystem.h"
#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {
namespace {

using platform::WriteOption;
using Failure = std::optional<platform::Error>;

struct FileSystemFaults : testing::TestWithParam<int> {
  std::shared_ptr<FaultyCalls> calls = std::make_shared<FaultyCalls>();
  ports::LinuxFileSystem files{calls};
  TemporaryFolder folder;
  platform::FileURL target = folder / "notes.md";

  void place(const std::string& content) const {
    ::unlink(target.path().c_str());
    if (content != "(none)") writeFile(target, content);
  }

  /// Runs `operation` on a file that holds `before` ("(none)": there is none), with its first, second, ...
  /// system call failing until it makes fewer. `check` is for what each run leaves. Returns how many calls
  /// the operation makes.
  int sweep(const std::string& before, const std::function<Failure()>& operation,
            const std::function<void(bool isSuccess)>& check) {
    for (int failing = 1;; ++failing) {
      place(before);
      const auto descriptors = openDescriptors();
      calls->failCall(failing, GetParam());
      const auto error = operation();
      EXPECT_EQ(openDescriptors(), descriptors) << "call " << failing;
      if (calls->made < failing) return failing - 1;
      check(!error);
      EXPECT_TRUE(GetParam() != EINTR || !error) << "call " << failing << " was interrupted";
      if (error) expectWords(*error);
    }
  }

  void expectWords(const platform::Error& error) const {
    EXPECT_NE(error.description.find("\"" + target.path() + "\""), std::string::npos) << error.description;
    EXPECT_NE(error.description.find(::strerror(GetParam())), std::string::npos) << error.description;
    const bool isPermission =
        (GetParam() == EACCES || GetParam() == EPERM) && !error.description.starts_with("Can't read ");
    EXPECT_EQ(error.domain, isPermission ? platform::CocoaErrorDomain : platform::POSIXErrorDomain);
    EXPECT_EQ(error.code, isPermission ? platform::FileWriteNoPermissionError : GetParam());
  }
};

TEST_P(FileSystemFaults, LeaveTheOldFileOrTheWholeNewOneOfAWriteButNoPartOfANewOne) {
  struct Row {
    std::string before;
    WriteOption option;
    std::size_t mostBytes;
    int calls;
  };
  for (const auto& row :
       {Row{"old", WriteOption::atomic, SIZE_MAX, 7}, Row{"(none)", WriteOption::atomic, SIZE_MAX, 7},
        Row{"(none)", WriteOption::none, 5, 6}, Row{"old", WriteOption::none, 5, 7}}) {
    calls->mostBytes = row.mostBytes;
    const auto write = [&] { return files.writeData("the new text", target, row.option); };
    const bool mayCut = row.before == "old" && row.option == WriteOption::none;
    EXPECT_GE(sweep(row.before, write,
                    [&](bool isSuccess) {
                      const auto left = readFile(target);
                      if (isSuccess) {
                        EXPECT_EQ(left, "the new text");
                      } else {
                        EXPECT_TRUE(left == row.before || (mayCut && left != "(none)")) << left;
                      }
                      EXPECT_EQ(namesIn(folder.url()).size(), left == "(none)" ? 0U : 1U);
                    }),
              row.calls);
  }
}

TEST_P(FileSystemFaults, AreReportedByAppendingAndReading) {
  const auto ignore = [](bool) {};
  EXPECT_GE(sweep(
                "", [&] { return files.appendData("+", target); }, ignore),
            3);
  calls->mostBytes = 3;
  const auto read = [&]() -> Failure {
    const auto content = files.contentsOfFile(target);
    if (!content) return content.error();
    EXPECT_EQ(*content, "content");
    return std::nullopt;
  };
  EXPECT_GE(sweep("content", read, ignore), 6);
}

INSTANTIATE_TEST_SUITE_P(Of, FileSystemFaults,
                         testing::Values(ENOSPC, EDQUOT, EIO, EACCES, EPERM, EROFS, EINTR),
                         [](const auto& row) { return std::string(strerrorname_np(row.param)); });

TEST(ShortWrites, AreContinuedInWholeFilesAndAnErrorInAppending) {
  const auto calls = std::make_shared<FaultyCalls>();
  calls->mostBytes = 1;
  ports::LinuxFileSystem files(calls);
  const TemporaryFolder folder;
  writeFile(folder / "file", "one");
  EXPECT_EQ(files.appendData("more", folder / "file").value().code, ENOSPC);
  // A device that takes nothing must not be tried for ever.
  calls->mostBytes = 0;
  EXPECT_EQ(files.writeData("x", folder / "none", WriteOption::atomic).value().code, EIO);
  EXPECT_EQ(namesIn(folder.url()), std::vector<std::string>{"file"});
}

}  // namespace
}  // namespace sprig::test
