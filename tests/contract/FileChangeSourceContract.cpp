// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

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

TEST_F(FileChangeSourceContract, CallsOnceForEachThingItIsAskedForAndForNothingElse) {
  using Events = platform::FileEvents;
  struct Row {
    const char* watched;  // "." is the folder, which holds "file"
    Events events;
    const char* happens;  // as a shell does it in the folder
    int calls;
  };
  for (const auto& row : {
           Row{"file", Events::write, "echo 22 1<>file", 1},
           Row{"file", Events::write, "echo 22 >>file", 1},
           Row{"file", Events::write, "truncate -s 0 file", 1},
           Row{"file", Events::deleted, "echo 2 >file", 0},
           Row{"file", all, "rm file", 1},
           Row{"file", Events::write, "rm file", 0},
           Row{"file", Events::deleted, "echo 2 >new; mv new file", 1},
           Row{"file", Events::deleted, "ln file backup; echo 2 >new; mv new file", 1},
           Row{"file", all, "ln file more", 0},
           Row{"file", Events::renamed, "mv file x", 1},
           Row{"file", Events::deleted, "mv file x; chmod 640 x; touch x", 0},
           Row{"file", Events::deleted, "mv file x; rm x", 1},
           Row{"file", Events::write, "mv file x; echo 2 1<>x", 1},
           Row{"file", all, "chmod 640 file; touch file; cat file; echo 2 >other", 0},
           Row{".", Events::write, "echo >new", 1},
           Row{".", Events::write, "mkdir new", 1},
           Row{".", Events::write, "rm file", 1},
           Row{".", Events::write, "mv file x", 1},
           Row{".", Events::write, "mv in/file file", 1},
           Row{".", Events::write, "echo 2 >file", 0},
           Row{".", all, "chmod 640 file; touch file; chmod 750 .", 0},
           Row{".", Events::renamed, "mv ../folder ../x", 1},
           Row{".", Events::deleted, "rm -r ../folder", 1},
       }) {
    const TemporaryFolder place;
    const auto at = place / "folder";
    ASSERT_TRUE(
        runsInShell("mkdir -p '" + at.path() + "/in'; cd '" + at.path() + "'; echo 1 | tee file >in/file"));
    Tally calls;
    auto makers = makeFileChangeSources();
    auto source = makers->makeFileSystemObjectSource(at.appendingPath(row.watched), row.events);
    ASSERT_TRUE(source) << row.happens;
    source->resume([&] { calls.add(); });
    ASSERT_TRUE(runsInShell("cd '" + at.path() + "'; (" + row.happens + ") >../shown")) << row.happens;
    EXPECT_TRUE(calls.reaches(row.calls)) << row.happens;
    source->cancel();
    makers.reset();
    EXPECT_EQ(calls.count(), row.calls) << row.happens;
  }
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

TEST_F(FileChangeSourceContract, TellsOfEventsThatWereTooManyToKeep) {
  const std::vector<platform::FileURL> noisy = {folder / "a", folder / "b"};
  std::vector<std::unique_ptr<platform::FileChangeSource>> others;
  Tally release;
  for (const auto& noise : noisy) {
    writeFile(noise, "");
    others.push_back(make(noise));
    others.back()->resume([&] { release.reaches(1); });
  }
  auto source = make(file);
  source->resume(counting());
  for (int round = 0; round < 10'000; ++round) {
    for (const auto& noise : noisy) std::filesystem::resize_file(noise.path(), 0);
  }
  writeFile(file, "2");
  release.add();
  EXPECT_TRUE(tally.reaches(1));
  others.clear();
  finish(std::move(source));
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
