// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/CreationJournal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <filesystem>
#include <thread>

#include "contract/Process.h"
#include "ports/linux/Descriptor.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {
namespace {

using platform::FileURL;
using ports::Creation;
using ports::CreationJournal;
using ports::CreationState;

struct Journal : testing::Test {
  TemporaryFolder temporary;
  FileURL folder = temporary / "state/sprig";
  CreationJournal journal{folder};

  FileURL make(const std::string& name) {
    const auto file = temporary / name;
    writeFile(file, name);
    return file;
  }
  FileURL create(const std::string& name) {
    auto file = make(name);
    journal.created(file);
    return file;
  }
  std::vector<FileURL> kept() const {
    std::vector<FileURL> files;
    for (const auto& creation : CreationJournal(folder).creations()) files.push_back(creation.file);
    return files;
  }
};

TEST_F(Journal, KeepsTheLastTwentyInPrivate) {
  std::vector<FileURL> files;
  for (const std::string name : {"a b", "100%41", "two\nlines", "bytes\xff", "tab\t\x7f", "日本"}) {
    files.insert(files.begin(), create(name));
  }
  EXPECT_EQ(kept(), files);
  for (int number = 0; number < 17; ++number) files.insert(files.begin(), create(std::to_string(number)));
  files.resize(CreationJournal::maxCreations, FileURL("/"));
  EXPECT_EQ(kept(), files);
  journal.forget(journal.creations().front());
  files.erase(files.begin());
  EXPECT_EQ(kept(), files);
  EXPECT_EQ(modeOf(folder), 0700U);
  EXPECT_EQ(modeOf(folder.appendingPath("creations")), 0600U);
  EXPECT_EQ(namesIn(folder), (std::vector<std::string>{"creations", "creations.lock"}));
}

TEST_F(Journal, LosesNothingOfWritersAtOnce) {
  std::vector<std::thread> writers;
  for (const std::string writer : {"a", "b", "c", "d"}) {
    writers.emplace_back([this, writer] {
      for (int number = 0; number < 5; ++number)
        CreationJournal(folder).created(make(writer + std::to_string(number)));
    });
  }
  for (auto& writer : writers) writer.join();
  EXPECT_EQ(kept().size(), CreationJournal::maxCreations);
}

TEST_F(Journal, TakesWhatMakesSenseOfGarbage) {
  const auto file = create("file");
  const auto whole = readFile(folder.appendingPath("creations"));
  const std::string huge(2'000'000, 'x');
  for (const auto& garbage :
       {std::string("1 2 3 4 relative\n"), std::string("1 2 3 4 /a%0\n1 2 3 4 /a%00\n1 2 3 4 /a%zz\n"),
        std::string("1 2 9223372036854775807 4 /a\n1 2 -1 4 /a\n"), std::string("1 2 3 /a\n\n\xff\0\n", 13),
        std::string("99999999999999999999 2 3 4 /a\n")}) {
    writeFile(folder.appendingPath("creations"), garbage + whole + "1 2 3 4 /cut off" + huge);
    EXPECT_EQ(kept(), std::vector<FileURL>{file}) << garbage;
  }
}

TEST_F(Journal, NeverFailsNorWaitsLongWhereNothingCanBeKept) {
  writeFile(temporary / "state", "no folder");
  create("a");
  EXPECT_EQ(kept(), std::vector<FileURL>{});
  std::filesystem::remove((temporary / "state").path());
  journal.created(temporary / "missing");
  const auto first = create("b");
  const auto descriptors = openDescriptors();
  const ports::Descriptor lock(::open(folder.appendingPath("creations.lock").path().c_str(), O_RDWR));
  ASSERT_EQ(::flock(lock.get(), LOCK_EX), 0);
  create("c");
  EXPECT_EQ(kept(), std::vector<FileURL>{first});
  EXPECT_EQ(openDescriptors(), descriptors + 1);
}

TEST_F(Journal, KnowsAFileThatWasTouched) {
  struct Row {
    std::function<void(const std::string& path)> touch;
    CreationState state;
  };
  using namespace std::filesystem;
  const Row rows[] = {
      {[](const auto&) {}, CreationState::untouched},
      {[](const auto& path) { permissions(path, perms::owner_read); }, CreationState::untouched},
      {[](const auto& path) { writeFile(FileURL(path), "other words"); }, CreationState::changed},
      {[](const auto& path) { last_write_time(path, file_time_type::min()); }, CreationState::changed},
      {[](const auto& path) { copy_file(path, path + "~"), rename(path + "~", path); },
       CreationState::replaced},
      {[](const auto& path) { remove(path), create_symlink("/nowhere", path); }, CreationState::replaced},
      {[](const auto& path) { remove(path), create_directory(path); }, CreationState::replaced},
      {[](const auto& path) { remove(path); }, CreationState::gone}};
  int number = 0;
  for (const auto& [touch, state] : rows) {
    const auto file = create("file" + std::to_string(number++));
    const auto creation = journal.creations().front();
    touch(file.path());
    EXPECT_EQ(creation.state(), state) << file.path();
    EXPECT_EQ(creation.remove(), state == CreationState::untouched);
    EXPECT_EQ(exists(symlink_status(file.path())),
              state != CreationState::untouched && state != CreationState::gone);
  }
}

}  // namespace
}  // namespace sprig::test
