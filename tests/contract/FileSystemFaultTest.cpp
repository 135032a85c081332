#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "contract/Process.h"
#include "ports/linux/LinuxFileSystem.h"
#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {
namespace {

using platform::WriteOption;

class FileSystemFaults : public testing::TestWithParam<int> {
 protected:
  /// Runs `operation` with its first, second, ... system call failing until it makes fewer; what is checked
  /// after each run is `check`'s. Returns how many calls the operation makes.
  template <typename Prepare, typename Operation, typename Check>
  int sweep(Prepare prepare, Operation operation, Check check) {
    for (int failing = 1;; ++failing) {
      prepare();
      const auto descriptors = openDescriptors();
      calls->mostBytes = SIZE_MAX;
      calls->failCall(failing, GetParam());
      const bool isSuccess = operation();
      EXPECT_EQ(openDescriptors(), descriptors) << "call " << failing;
      if (calls->made < failing) return failing - 1;
      check(isSuccess);
      EXPECT_TRUE(GetParam() != EINTR || isSuccess) << "call " << failing << " was interrupted";
    }
  }

  void expectErrorOfPath(const std::optional<platform::Error>& error, const std::string& path) const {
    if (!error) return;
    const bool isPermission = GetParam() == EACCES || GetParam() == EPERM;
    EXPECT_EQ(error->domain, isPermission ? platform::CocoaErrorDomain : platform::POSIXErrorDomain);
    EXPECT_EQ(error->code, isPermission ? platform::FileWriteNoPermissionError : GetParam());
    EXPECT_NE(error->description.find("\"" + path + "\""), std::string::npos) << error->description;
    EXPECT_NE(error->description.find(::strerror(GetParam())), std::string::npos) << error->description;
  }

  std::shared_ptr<FaultyCalls> calls = std::make_shared<FaultyCalls>();
  ports::LinuxFileSystem files{calls};
  TemporaryFolder folder;
  platform::FileURL target = folder / "notes.md";
};

TEST_P(FileSystemFaults, LeaveTheOldFileOrTheWholeNewOneOfAnAtomicWrite) {
  for (const std::string before : {"old", "(none)"}) {
    const int swept = sweep(
        [&] {
          ::unlink(target.path().c_str());
          if (before == "old") writeFile(target, before);
        },
        [&] {
          const auto error = files.writeData("the new text", target, WriteOption::atomic);
          expectErrorOfPath(error, target.path());
          return !error;
        },
        [&](bool isSuccess) {
          EXPECT_EQ(readFile(target), isSuccess ? "the new text" : before);
          EXPECT_EQ(namesIn(folder.url()).size(), before == "old" || isSuccess ? 1U : 0U);
        });
    EXPECT_GE(swept, 7);
  }
}

TEST_P(FileSystemFaults, LeaveNoPartOfAFileThatAPlainWriteBegan) {
  const int swept = sweep([&] { ::unlink(target.path().c_str()); },
                          [&] {
                            calls->mostBytes = 5;
                            const auto error = files.writeData("the new text", target, WriteOption::none);
                            expectErrorOfPath(error, target.path());
                            return !error;
                          },
                          [&](bool isSuccess) {
                            EXPECT_EQ(readFile(target), isSuccess ? "the new text" : "(none)");
                            EXPECT_EQ(namesIn(folder.url()).size(), isSuccess ? 1U : 0U);
                          });
  EXPECT_GE(swept, 6);
}

TEST_P(FileSystemFaults, AreReportedByAppendingAndReading) {
  writeFile(target, "");
  EXPECT_GE(sweep([] {},
                  [&] {
                    const auto error = files.appendData("+", target);
                    expectErrorOfPath(error, target.path());
                    return !error;
                  },
                  [&](bool) {}),
            3);
  writeFile(target, "content");
  EXPECT_GE(sweep([] {},
                  [&] {
                    calls->mostBytes = 3;
                    const auto content = files.contentsOfFile(target);
                    if (content) {
                      EXPECT_EQ(*content, "content");
                    } else {
                      EXPECT_EQ(content.error().domain, platform::POSIXErrorDomain);
                      EXPECT_EQ(content.error().code, GetParam());
                    }
                    return content.has_value();
                  },
                  [](bool) {}),
            6);
}

INSTANTIATE_TEST_SUITE_P(Of, FileSystemFaults,
                         testing::Values(ENOSPC, EDQUOT, EIO, EACCES, EPERM, EROFS, EINTR),
                         [](const auto& row) { return std::string(strerrorname_np(row.param)); });

TEST(ShortWrites, AreContinuedInWholeFilesAndAnErrorInAppending) {
  const auto calls = std::make_shared<FaultyCalls>();
  calls->mostBytes = 1;
  ports::LinuxFileSystem files(calls);
  const TemporaryFolder folder;
  for (const auto option : {WriteOption::atomic, WriteOption::none}) {
    EXPECT_FALSE(files.writeData("byte by byte", folder / "file", option));
    EXPECT_EQ(readFile(folder / "file"), "byte by byte");
  }
  EXPECT_EQ(files.appendData("more", folder / "file").value().code, ENOSPC);
  // A device that takes nothing must not be tried for ever.
  calls->mostBytes = 0;
  EXPECT_EQ(files.writeData("x", folder / "none", WriteOption::atomic).value().code, EIO);
  EXPECT_EQ(namesIn(folder.url()), std::vector<std::string>{"file"});
}

}  // namespace
}  // namespace sprig::test
