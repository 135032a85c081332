// SPDX-License-Identifier: GPL-3.0-or-later

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "contract/Process.h"
#include "contract/Worlds.h"
#include "platform/FileChangeSource.h"
#include "support/Eventually.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {
namespace {

/// What every maker of file-change sources owes.
class FileChangeSourceContract : public testing::Test {
 protected:
  static constexpr platform::FileEvents all =
      platform::FileEvents::write | platform::FileEvents::deleted | platform::FileEvents::renamed;

  FileChangeSourceContract() { writeFile(file, "1"); }

  auto make(const platform::FileURL& location, platform::FileEvents events = all) {
    return sources->makeFileSystemObjectSource(location, events);
  }
  /// Cancels and waits until no more calls can come.
  void finish(std::unique_ptr<platform::FileChangeSource> source) {
    source.reset();
    sources.reset();
  }
  std::function<void()> counting() {
    return [this] { tally.add(); };
  }

  TemporaryFolder folder;
  platform::FileURL file = folder / "file";
  const std::size_t descriptorsBefore = openDescriptors();
  std::unique_ptr<platform::FileChangeSources> sources = makeFileChangeSources();
  Tally tally;
};

TEST_F(FileChangeSourceContract, ReportsWhatItIsAskedForAndNothingElse) {
  using Events = platform::FileEvents;
  struct Row {
    const char* watched;  // "." is the folder, which holds "file"
    Events events;
    const char* happens;  // as a shell does it in the folder
    bool isReported;
  };
  for (const auto& row : {
           Row{"file", Events::write, "echo 22 >file", true},
           Row{"file", Events::write, "truncate -s 0 file", true},
           Row{"file", Events::deleted, "echo 2 >file", false},
           Row{"file", Events::deleted, "rm file", true},
           Row{"file", Events::write, "rm file", false},
           Row{"file", Events::deleted, "echo 2 >new; mv new file", true},
           Row{"file", Events::deleted, "ln file backup; echo 2 >new; mv new file", true},
           Row{"file", all, "ln file more", false},
           Row{"file", Events::renamed, "mv file x", true},
           Row{"file", Events::deleted, "mv file x; chmod 640 x; touch x", false},
           Row{"file", Events::deleted, "mv file x; rm x", true},
           Row{"file", Events::write, "mv file x; echo 2 >x", true},
           Row{"file", all, "chmod 640 file; touch file; cat file; echo 2 >other", false},
           Row{".", Events::write, "echo >new", true},
           Row{".", Events::write, "mkdir new", true},
           Row{".", Events::write, "rm file", true},
           Row{".", Events::write, "mv file x", true},
           Row{".", Events::write, "echo 2 >file", false},
           Row{".", all, "chmod 640 file; touch file; chmod 750 .", false},
           Row{".", Events::renamed, "mv ../folder ../x", true},
           Row{".", Events::deleted, "rm -r ../folder", true},
       }) {
    const TemporaryFolder place;
    const auto at = place / "folder";
    ASSERT_TRUE(runsInShell("mkdir '" + at.path() + "'; echo 1 >'" + at.path() + "/file'"));
    Tally calls;
    auto makers = makeFileChangeSources();
    auto source = makers->makeFileSystemObjectSource(at.appendingPath(row.watched), row.events);
    ASSERT_TRUE(source) << row.happens;
    source->resume([&] { calls.add(); });
    ASSERT_TRUE(runsInShell("cd '" + at.path() + "'; (" + row.happens + ") >../shown"));
    EXPECT_EQ(row.isReported, row.isReported && calls.reaches(1)) << row.happens;
    source->cancel();
    makers.reset();
    EXPECT_EQ(calls.count() > 0, row.isReported) << row.happens;
  }
}

TEST_F(FileChangeSourceContract, CallsOnceForARemovalAndOnceForEachWrite) {
  auto source = make(file);
  source->resume(counting());
  for (int count = 1; count <= 3; ++count) {
    const int descriptor = ::open(file.path().c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    EXPECT_EQ(::write(descriptor, "x", 1), 1);
    ::close(descriptor);
    ASSERT_TRUE(tally.reaches(count));
  }
  std::filesystem::remove(file.path());
  ASSERT_TRUE(tally.reaches(4));
  finish(std::move(source));
  EXPECT_EQ(tally.count(), 4);
}

TEST_F(FileChangeSourceContract, TellsOfANewFileOnceItIsWrittenAndOfARenameOnce) {
  auto source = make(folder.url(), platform::FileEvents::write);
  source->resume(counting());
  const auto entry = folder / "entry";
  const int descriptor = ::open(entry.path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  EXPECT_EQ(::write(descriptor, "x", 1), 1);
  ::close(descriptor);
  ASSERT_TRUE(tally.reaches(1));
  writeFile(entry, "again, which is not the folder's affair");
  std::filesystem::rename(entry.path(), file.path());
  ASSERT_TRUE(tally.reaches(2));
  std::filesystem::remove(file.path());
  ASSERT_TRUE(tally.reaches(3));
  finish(std::move(source));
  EXPECT_EQ(tally.count(), 3);
}

TEST_F(FileChangeSourceContract, TellsEveryResumedSourceAlsoOfWhatHappenedBefore) {
  std::filesystem::create_symlink("file", (folder / "link").path());
  auto direct = make(file);
  auto linked = make(folder / "link");
  auto cancelled = make(file);
  std::filesystem::resize_file(file.path(), 0);
  direct->resume(counting());
  linked->resume(counting());
  cancelled->cancel();
  cancelled->resume(counting());
  EXPECT_TRUE(tally.reaches(2));
  sources.reset();
  EXPECT_EQ(tally.count(), 2);
}

TEST_F(FileChangeSourceContract, MakesNoSourceOfNothing) {
  const auto descriptors = openDescriptors();
  std::filesystem::create_symlink("nowhere", (folder / "dangling").path());
  for (const auto* name : {"missing", "file/below", "dangling"}) EXPECT_FALSE(make(folder / name));
  EXPECT_EQ(openDescriptors(), descriptors);
}

TEST_F(FileChangeSourceContract, DeliversWhatIsPendingAtCancellationInOneLastCall) {
  Tally release;
  auto source = make(file);
  source->resume([&] {
    tally.add();
    release.reaches(1);
  });
  writeFile(file, "2");
  ASSERT_TRUE(tally.reaches(1));
  for (int round = 0; round < 3; ++round) {
    writeFile(file, "3");
    std::filesystem::rename(file.path(), file.path() + "~");
    std::filesystem::rename(file.path() + "~", file.path());
  }
  source->cancel();
  source->cancel();
  writeFile(file, "4");
  release.add();
  finish(std::move(source));
  // The first write is an emptying and a writing, which may have been two events.
  EXPECT_EQ(tally.count(), 2);
}

TEST_F(FileChangeSourceContract, KeepsAHandlerAliveThatDestroysItsSource) {
  auto source = make(file);
  std::string seen;
  source->resume([this, &source, &seen, text = std::string(100, 'x')] {
    source.reset();
    seen = text;
    tally.add();
  });
  std::filesystem::remove(file.path());
  ASSERT_TRUE(tally.reaches(1));
  sources.reset();
  EXPECT_EQ(seen, std::string(100, 'x'));
  EXPECT_EQ(tally.count(), 1);
  EXPECT_EQ(openDescriptors(), descriptorsBefore);
}

TEST_F(FileChangeSourceContract, MissesNoEventBetweenItsCancellationAndItsSuccessorInAHandler) {
  auto source = make(file);
  std::unique_ptr<platform::FileChangeSource> successor;
  source->resume([&] {
    if (successor) return tally.add();
    source->cancel();
    writeFile(file, "between");
    successor = make(file);
    tally.add();
  });
  // One event, so that the second call can only be for what is written in the handler.
  std::filesystem::resize_file(file.path(), 0);
  EXPECT_TRUE(tally.reaches(2));
  sources.reset();
}

TEST_F(FileChangeSourceContract, MayBeCancelledAndDestroyedOnAnyThreadWhileEventsArrive) {
  std::thread writer([&] {
    for (int round = 0; round < 300; ++round) writeFile(file, std::to_string(round));
  });
  std::vector<std::thread> users;
  for (int user = 0; user < 3; ++user) {
    users.emplace_back([&] {
      for (int round = 0; round < 100; ++round) {
        auto source = make(file);
        source->resume(counting());
        if (round % 2 == 0) source->cancel();
      }
    });
  }
  for (auto& user : users) user.join();
  writer.join();
  sources.reset();
  EXPECT_EQ(openDescriptors(), descriptorsBefore);
}

TEST_F(FileChangeSourceContract, OutlivesItsMakerQuietly) {
  auto source = make(file);
  source->resume(counting());
  sources.reset();
  writeFile(file, "2");
  source.reset();
  EXPECT_EQ(tally.count(), 0);
  EXPECT_EQ(openDescriptors(), descriptorsBefore);
}

}  // namespace
}  // namespace sprig::test
