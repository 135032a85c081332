#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "contract/Process.h"
#include "platform/FileChangeSource.h"
#include "support/Eventually.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {

/// What every maker of file-change sources owes. `World` has `std::unique_ptr<platform::FileChangeSources>
/// makeSources()`; to destroy the result ends all calls, after the last calls that are due.
template <typename World>
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
  World world;
  const std::size_t descriptorsBefore = openDescriptors();
  std::unique_ptr<platform::FileChangeSources> sources = world.makeSources();
  Tally tally;
};

TYPED_TEST_SUITE_P(FileChangeSourceContract);

inline void rename(const platform::FileURL& from, const platform::FileURL& to) {
  std::filesystem::rename(from.path(), to.path());
}
inline void remove(const platform::FileURL& entry) { std::filesystem::remove_all(entry.path()); }
inline void touch(const platform::FileURL& entry) {
  ::chmod(entry.path().c_str(), 0640);
  ::utimensat(AT_FDCWD, entry.path().c_str(), nullptr, 0);
}
inline void hardLink(const platform::FileURL& from, const platform::FileURL& to) {
  std::filesystem::create_hard_link(from.path(), to.path());
}

TYPED_TEST_P(FileChangeSourceContract, ReportsWhatItIsAskedForAndNothingElse) {
  using Events = platform::FileEvents;
  using Folder = const platform::FileURL&;
  struct Row {
    const char* what;
    const char* watched;  // "" is the folder, which holds "file"
    Events events;
    std::function<void(Folder)> happens;
    bool isReported;
  };
  const auto in = [](Folder parent, const char* name) { return parent.appendingPath(name); };
  const auto replace = [in](Folder at) {
    writeFile(in(at, "new"), "2");
    rename(in(at, "new"), in(at, "file"));
  };
  const std::vector<Row> rows = {
      {"rewritten in place", "file", Events::write, [&](Folder at) { writeFile(in(at, "file"), "22"); },
       true},
      {"emptied", "file", Events::write,
       [&](Folder at) { std::filesystem::resize_file(in(at, "file").path(), 0); }, true},
      {"written, deletion wanted", "file", Events::deleted,
       [&](Folder at) { writeFile(in(at, "file"), "2"); }, false},
      {"removed", "file", Events::deleted, [&](Folder at) { remove(in(at, "file")); }, true},
      {"removed, writes wanted", "file", Events::write, [&](Folder at) { remove(in(at, "file")); }, false},
      {"replaced", "file", Events::deleted, replace, true},
      {"replaced after a backup link", "file", Events::deleted,
       [&](Folder at) {
         hardLink(in(at, "file"), in(at, "backup"));
         replace(at);
       },
       true},
      {"linked once more", "file", this->all, [&](Folder at) { hardLink(in(at, "file"), in(at, "more")); },
       false},
      {"moved away", "file", Events::renamed, [&](Folder at) { rename(in(at, "file"), in(at, "x")); }, true},
      {"moved away, deletion wanted", "file", Events::deleted,
       [&](Folder at) {
         rename(in(at, "file"), in(at, "x"));
         touch(in(at, "x"));
       },
       false},
      {"moved away and removed there", "file", Events::deleted,
       [&](Folder at) {
         rename(in(at, "file"), in(at, "x"));
         remove(in(at, "x"));
       },
       true},
      {"moved away and written there", "file", Events::write,
       [&](Folder at) {
         rename(in(at, "file"), in(at, "x"));
         writeFile(in(at, "x"), "2");
       },
       true},
      {"mode and times", "file", this->all, [&](Folder at) { touch(in(at, "file")); }, false},
      {"read", "file", this->all, [&](Folder at) { readFile(in(at, "file")); }, false},
      {"a neighbour written", "file", this->all, [&](Folder at) { writeFile(in(at, "other"), ""); }, false},
      {"entry created", "", Events::write, [&](Folder at) { writeFile(in(at, "new"), ""); }, true},
      {"folder created", "", Events::write, [&](Folder at) { ::mkdir(in(at, "new").path().c_str(), 0700); },
       true},
      {"entry removed", "", Events::write, [&](Folder at) { remove(in(at, "file")); }, true},
      {"entry renamed", "", Events::write, [&](Folder at) { rename(in(at, "file"), in(at, "x")); }, true},
      {"entry rewritten", "", Events::write, [&](Folder at) { writeFile(in(at, "file"), "2"); }, false},
      {"entry touched", "", this->all, [&](Folder at) { touch(in(at, "file")); }, false},
      {"folder moved", "", Events::renamed,
       [&](Folder at) { rename(at, in(at.deletingLastPathComponent(), "x")); }, true},
      {"folder removed", "", Events::deleted, [&](Folder at) { remove(at); }, true},
      {"folder touched", "", this->all, [&](Folder at) { touch(at); }, false},
  };
  for (const auto& row : rows) {
    const TemporaryFolder place;
    const auto at = place / "folder";
    ::mkdir(at.path().c_str(), 0700);
    writeFile(at.appendingPath("file"), "1");
    Tally calls;
    auto makers = this->world.makeSources();
    auto source =
        makers->makeFileSystemObjectSource(*row.watched ? at.appendingPath(row.watched) : at, row.events);
    ASSERT_TRUE(source) << row.what;
    source->resume([&] { calls.add(); });
    row.happens(at);
    if (row.isReported) {
      EXPECT_TRUE(calls.reaches(1)) << row.what;
    }
    source->cancel();
    makers.reset();
    EXPECT_EQ(calls.count() > 0, row.isReported) << row.what;
  }
}

TYPED_TEST_P(FileChangeSourceContract, CallsOnceForARemovalAndOnceForEachWrite) {
  auto source = this->make(this->file);
  source->resume(this->counting());
  for (int count = 1; count <= 3; ++count) {
    const int descriptor = ::open(this->file.path().c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    EXPECT_EQ(::write(descriptor, "x", 1), 1);
    ::close(descriptor);
    ASSERT_TRUE(this->tally.reaches(count));
  }
  remove(this->file);
  ASSERT_TRUE(this->tally.reaches(4));
  this->finish(std::move(source));
  EXPECT_EQ(this->tally.count(), 4);
}

TYPED_TEST_P(FileChangeSourceContract, TellsOfANewEntryWhenItAppearsAndWheneverItsWriterIsDone) {
  auto source = this->make(this->folder.url(), platform::FileEvents::write);
  source->resume(this->counting());
  const auto entry = this->folder / "entry";
  for (const int expected : {1, 3}) {
    const int descriptor = ::open(entry.path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_TRUE(expected == 3 || this->tally.reaches(1));
    EXPECT_EQ(::write(descriptor, "x", 1), 1);
    ::close(descriptor);
    ASSERT_TRUE(this->tally.reaches(expected == 1 ? 2 : 3));
  }
  rename(entry, this->file);
  ASSERT_TRUE(this->tally.reaches(5));
  this->finish(std::move(source));
  EXPECT_EQ(this->tally.count(), 5);
}

TYPED_TEST_P(FileChangeSourceContract, FollowsALinkToTheFileItself) {
  std::filesystem::create_symlink("file", (this->folder / "link").path());
  auto source = this->make(this->folder / "link");
  source->resume(this->counting());
  writeFile(this->file, "2");
  EXPECT_TRUE(this->tally.reaches(1));
}

TYPED_TEST_P(FileChangeSourceContract, TellsEverySourceOfAFile) {
  Tally second;
  auto one = this->make(this->file);
  auto other = this->make(this->file);
  one->resume(this->counting());
  other->resume([&] { second.add(); });
  writeFile(this->file, "2");
  EXPECT_TRUE(this->tally.reaches(1));
  EXPECT_TRUE(second.reaches(1));
  one.reset();
  other.reset();
  this->sources.reset();  // `second` goes before the fixture
}

TYPED_TEST_P(FileChangeSourceContract, MakesNoSourceOfNothing) {
  const auto descriptors = openDescriptors();
  std::filesystem::create_symlink("nowhere", (this->folder / "dangling").path());
  for (const auto* name : {"missing", "file/below", "dangling"})
    EXPECT_FALSE(this->make(this->folder / name));
  EXPECT_EQ(openDescriptors(), descriptors);
}

TYPED_TEST_P(FileChangeSourceContract, DeliversWhatHappenedBeforeItWasResumed) {
  auto source = this->make(this->file);
  writeFile(this->file, "2");
  source->resume(this->counting());
  EXPECT_TRUE(this->tally.reaches(1));
}

TYPED_TEST_P(FileChangeSourceContract, DeliversNothingWhenItWasNeverResumed) {
  auto source = this->make(this->file);
  writeFile(this->file, "2");
  source->cancel();
  source->resume(this->counting());
  this->finish(std::move(source));
  EXPECT_EQ(this->tally.count(), 0);
}

TYPED_TEST_P(FileChangeSourceContract, DeliversWhatIsPendingAtCancellationInOneLastCall) {
  Tally release;
  auto source = this->make(this->file);
  source->resume([&] {
    this->tally.add();
    release.reaches(1);
  });
  writeFile(this->file, "2");
  ASSERT_TRUE(this->tally.reaches(1));
  for (int round = 0; round < 3; ++round) {
    writeFile(this->file, "3");
    rename(this->file, this->folder / "elsewhere");
    rename(this->folder / "elsewhere", this->file);
  }
  source->cancel();
  source->cancel();
  writeFile(this->file, "4");
  release.add();
  this->finish(std::move(source));
  // The first write is an emptying and a writing, which may have been two events.
  EXPECT_EQ(this->tally.count(), 2);
}

TYPED_TEST_P(FileChangeSourceContract, KeepsAHandlerAliveThatDestroysItsSource) {
  auto source = this->make(this->file);
  std::string seen;
  source->resume([this, &source, &seen, text = std::string(100, 'x')] {
    source.reset();
    seen = text;
    this->tally.add();
  });
  remove(this->file);
  ASSERT_TRUE(this->tally.reaches(1));
  this->sources.reset();
  EXPECT_EQ(seen, std::string(100, 'x'));
  EXPECT_EQ(this->tally.count(), 1);
  EXPECT_EQ(openDescriptors(), this->descriptorsBefore);
}

TYPED_TEST_P(FileChangeSourceContract, MissesNoEventBetweenItsCancellationAndItsSuccessorInAHandler) {
  auto source = this->make(this->file);
  std::unique_ptr<platform::FileChangeSource> successor;
  source->resume([&] {
    if (successor) return this->tally.add();
    source->cancel();
    writeFile(this->file, "between");
    successor = this->make(this->file);
    this->tally.add();
  });
  // One event, so that the second call can only be for what is written in the handler.
  std::filesystem::resize_file(this->file.path(), 0);
  EXPECT_TRUE(this->tally.reaches(2));
  this->sources.reset();
}

TYPED_TEST_P(FileChangeSourceContract, MissesNothingAndKeepsNoDescriptorsWhenItsHandlerReplacesIt) {
  std::unique_ptr<platform::FileChangeSource> current;
  std::string seen;
  Tally rounds;
  std::function<void()> arm = [&] {
    if (current) current->cancel();
    current = this->make(this->file);
    if (!current) return;
    current->resume([&] {
      seen = readFile(this->file);
      arm();
      rounds.add();
      if (seen == "last") this->tally.add();
    });
  };
  arm();
  const auto descriptors = openDescriptors();
  for (int round = 0; round < 1000; ++round) {
    const int before = rounds.count();
    writeFile(this->file, std::to_string(round));
    if (round % 2 == 0) continue;  // some in the midst of a replacement, some not
    ASSERT_TRUE(rounds.reaches(before + 1)) << round;
  }
  writeFile(this->file, "last");
  EXPECT_TRUE(this->tally.reaches(1));
  EXPECT_GE(rounds.count(), 500);
  EXPECT_TRUE(eventually([&] { return openDescriptors() == descriptors; }));
  this->sources.reset();
  current.reset();
  EXPECT_EQ(openDescriptors(), this->descriptorsBefore);
}

TYPED_TEST_P(FileChangeSourceContract, MayBeCancelledAndDestroyedOnAnyThreadWhileEventsArrive) {
  std::thread writer([&] {
    for (int round = 0; round < 300; ++round) writeFile(this->file, std::to_string(round));
  });
  std::vector<std::thread> users;
  for (int user = 0; user < 3; ++user) {
    users.emplace_back([&] {
      for (int round = 0; round < 100; ++round) {
        auto source = this->make(this->file);
        source->resume(this->counting());
        if (round % 2 == 0) source->cancel();
      }
    });
  }
  for (auto& user : users) user.join();
  writer.join();
  this->sources.reset();
  EXPECT_EQ(openDescriptors(), this->descriptorsBefore);
}

TYPED_TEST_P(FileChangeSourceContract, OutlivesItsMakerQuietly) {
  auto source = this->make(this->file);
  source->resume(this->counting());
  this->sources.reset();
  writeFile(this->file, "2");
  source.reset();
  EXPECT_EQ(this->tally.count(), 0);
  EXPECT_EQ(openDescriptors(), this->descriptorsBefore);
}

REGISTER_TYPED_TEST_SUITE_P(FileChangeSourceContract, ReportsWhatItIsAskedForAndNothingElse,
                            CallsOnceForARemovalAndOnceForEachWrite,
                            TellsOfANewEntryWhenItAppearsAndWheneverItsWriterIsDone,
                            FollowsALinkToTheFileItself, TellsEverySourceOfAFile, MakesNoSourceOfNothing,
                            DeliversWhatHappenedBeforeItWasResumed, DeliversNothingWhenItWasNeverResumed,
                            DeliversWhatIsPendingAtCancellationInOneLastCall,
                            KeepsAHandlerAliveThatDestroysItsSource,
                            MissesNoEventBetweenItsCancellationAndItsSuccessorInAHandler,
                            MissesNothingAndKeepsNoDescriptorsWhenItsHandlerReplacesIt,
                            MayBeCancelledAndDestroyedOnAnyThreadWhileEventsArrive, OutlivesItsMakerQuietly);

}  // namespace sprig::test
