// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <unistd.h>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/Process.h"
#include "ports/linux/LinuxFileSystem.h"
#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {
namespace {

using Failure = std::optional<platform::Error>;

struct FileSystemFaults : testing::TestWithParam<int> {
  std::shared_ptr<FaultyCalls> calls = std::make_shared<FaultyCalls>();
  ports::LinuxFileSystem files{calls};
  TemporaryFolder folder;
  platform::FileURL target = folder / "notes.md";

  void place(const std::string& content) const {
    ::unlink(target.path().c_str());
    if (content == "(link)") {
      EXPECT_EQ(::symlink("missing", target.path().c_str()), 0);
    } else if (content != "(none)") {
      writeFile(target, content);
    }
  }

  /// What can't be looked at counts as taken, and is tried again.
  Failure publish() {
    const auto file = files.prepareFile("the new text", folder.url());
    if (!file) return file.error();
    auto error = (*file)->publish("notes.md");
    return error && error->code == EEXIST ? (*file)->publish("notes.md") : error;
  }

  /// Runs `operation` on a file that holds `before` ("(none)": there is none; "(link)": a link without a
  /// target), with its first, second, ... system call failing until it makes fewer. `check` is for what each
  /// run leaves. Returns how many calls the operation makes.
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
    EXPECT_NE(error.description.find("\"" + folder.url().path()), std::string::npos) << error.description;
    EXPECT_NE(error.description.find(::strerror(GetParam())), std::string::npos) << error.description;
    const bool isPermission =
        (GetParam() == EACCES || GetParam() == EPERM) && !error.description.starts_with("Can't read ");
    EXPECT_EQ(error.domain, isPermission ? platform::CocoaErrorDomain : platform::POSIXErrorDomain);
    EXPECT_EQ(error.code, isPermission ? platform::FileWriteNoPermissionError : GetParam());
  }
};

TEST_P(FileSystemFaults, LeaveTheWholeNewFileOrNoneWhateverTheFileSystemCanDo) {
  struct Row {
    bool canRefuseToReplace, canLink, isAppendOnly, isDirect;
    std::string before;
    int calls;
  };
  for (const auto& row :
       {Row{true, true, false, false, "(none)", 7}, Row{true, true, false, false, "(link)", 13},
        Row{false, true, false, false, "(none)", 8}, Row{false, false, false, false, "(none)", 10},
        Row{false, true, false, false, "(link)", 15}, Row{true, true, true, false, "(none)", 6},
        Row{true, true, true, true, "(none)", 6}, Row{true, true, false, true, "(none)", 7}}) {
    calls->canRefuseToReplace = row.canRefuseToReplace;
    calls->canLink = row.canLink;
    calls->isAppendOnly = row.isAppendOnly;
    calls->maxBytes = row.isDirect ? 5 : SIZE_MAX;
    const auto operation = [&] {
      return row.isDirect ? files.createFile("the new text", target) : publish();
    };
    const auto nothing =
        row.before == "(none)" ? std::vector<std::string>{} : std::vector<std::string>{"notes.md"};
    const int made = sweep(row.before, operation, [&](bool isSuccess) {
      EXPECT_EQ(readFile(target), isSuccess ? "the new text" : "(none)");
      EXPECT_EQ(namesIn(folder.url()), isSuccess ? std::vector<std::string>{"notes.md"} : nothing);
    });
    EXPECT_GE(made, row.calls);
  }
}

TEST_P(FileSystemFaults, AreReportedByAppendingAndReading) {
  const auto ignore = [](bool) {};
  const auto append = [&] { return files.appendData("+", target); };
  EXPECT_GE(sweep("", append, ignore), 3);
  calls->maxBytes = 3;
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
  calls->maxBytes = 1;
  ports::LinuxFileSystem files(calls);
  const TemporaryFolder folder;
  writeFile(folder / "file", "one");
  EXPECT_EQ(files.appendData("more", folder / "file").value().code, ENOSPC);
  // A device that takes nothing must not be tried for ever.
  calls->maxBytes = 0;
  EXPECT_EQ(files.prepareFile("x", folder.url()).error().code, EIO);
  EXPECT_EQ(namesIn(folder.url()), std::vector<std::string>{"file"});
}

}  // namespace
}  // namespace sprig::test
