// SPDX-License-Identifier: GPL-3.0-or-later

// The store with the kernel's own events: every way in which editors save, seen from other threads.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <optional>
#include <thread>

#include "config/BuiltinTemplates.h"
#include "config/ConfigEncoder.h"
#include "config/ConfigManager.h"
#include "ports/linux/InotifyFileChangeSources.h"
#include "support/Eventually.h"
#include "support/TestPlatform.h"

namespace sprig {
namespace {

using platform::FileURL;
using test::eventually;

/// A document that tells its number.
std::string document(std::int64_t version) {
  AppConfigItem config;
  config.version = version;
  config.templates.resize(3);
  for (auto& item : config.templates) {
    item.name = std::to_string(version);
    item.enabled = true;
  }
  return encodeConfig(config);
}

/// Sources of which no more can be had, as at the limit of watches.
struct LimitedSources : platform::FileChangeSources {
  ports::InotifyFileChangeSources inotify;
  std::atomic<bool> isAtLimit = false;
  std::unique_ptr<platform::FileChangeSource> makeFileSystemObjectSource(
      const FileURL& location, platform::FileEvents events) override {
    return isAtLimit ? nullptr : inotify.makeFileSystemObjectSource(location, events);
  }
  void asyncAfter(std::chrono::milliseconds delay, std::function<void()> task) override {
    inotify.asyncAfter(delay, std::move(task));
  }
};

/// A platform with real sources. Their thread may be at work for a store that has gone, so it ends while the
/// platform is still in force.
struct LiveWorld {
  test::TestPlatform base;
  std::optional<platform::PlatformScope> scope;
  LimitedSources sources;
  platform::Platform services{
      base.files,   base.users,     base.process,   base.clock,  base.systemLog,   base.mainQueue, sources,
      base.volumes, base.workspace, base.creations, base.images, base.application, base.controller};
  LiveWorld() { scope.emplace(services); }
  /// Waits until all that has happened was reported, and what the handlers put off is done.
  void settle() {
    std::promise<void> settled;
    sources.async([&] { sources.async([&] { settled.set_value(); }); });
    settled.get_future().wait();
  }
};

struct LiveStore : testing::Test, LiveWorld {
  FileURL file = base.writeConfig(document(0));
  FileURL folder = file.deletingLastPathComponent();
  std::shared_ptr<ConfigManager> manager = ConfigManager::make();

  /// Watching begins in the background.
  LiveStore() { settle(); }
  bool shows(std::int64_t version) {
    return eventually([&] { return manager->getConfig()->version == version; });
  }
  void writeInPlace(std::int64_t version) { test::writeFile(file, document(version)); }
  void replace(std::int64_t version) {
    const auto temporary = folder.appendingPath("config.json.tmp");
    test::writeFile(temporary, document(version));
    std::filesystem::rename(temporary.path(), file.path());
  }
};

/// Files are told apart by the number of their templates; the built-in ones are eleven. What happened must
/// not keep the next save from being noticed.
TEST(LivePlaces, TheNextMenuIsThatOfTheFileAndEachEventIsOneLoad) {
  struct Row {
    const char* before;   // as a shell does it in the test's folder
    const char* happens;  // "C" is the configuration's folder, "L" the long path below it
    std::size_t templates;
    std::size_t loads;  // 0: not counted, as there is more than one event
  };
  for (const auto& row : {
           Row{"", "cat two >$C/config.json", 2, 1},
           Row{"cat two >$C/config.json", "cat one >$C/x; mv $C/x $C/config.json", 1, 3},
           Row{"cat two >$C/config.json; cat one >$C/x", "mv $C/x $C/y; mv $C/y $C/config.json", 1, 3},
           Row{"cat two >$C/config.json; cat one >$C/x", "mv $C/x $C/config.json", 1, 2},
           Row{"cat one >$C/x; mv $C/x $C/config.json", "cat two 1<>$C/config.json", 2, 1},
           Row{"cat two >$C/config.json", "rm $C/config.json", 11, 2},
           Row{"cat two >$C/config.json", "mv $C/config.json x; cat one >$C/config.json", 1, 0},
           Row{"cat two >$C/config.json", "rm $C/config.json; cat one >$C/config.json", 1, 0},
           Row{"cat two >$C/2; ln -s 2 $C/config.json", "cat one >$C/1; ln -s 1 $C/l; mv $C/l $C/config.json",
               1, 0},
           Row{"rmdir $C", "mkdir $C; cat two >$C/config.json; rm $C/config.json", 11, 0},
           Row{"rmdir $C", "mkdir $C; cat two >$C/config.json; mv $C/config.json x", 11, 0},
           Row{"cat two >$C/config.json", "mkdir -p $L; cat one >$L/config.json; rm -r $C/Library", 2, 0},
           Row{"cat two >$C/config.json", "mv $C away; mkdir $C; cat one >$C/config.json", 1, 0},
           Row{"cat two >$C/config.json", "mv $C away; mv away $C; cat one >$C/config.json", 1, 0},
           Row{"cat two >$C/config.json", "rm -r $C; mkdir $C; cat one >$C/config.json", 1, 0},
           Row{"rmdir $C; mkdir a b; cat two >a/config.json; cat one >b/config.json; ln -s a $C",
               "ln -s b l; mv -T l $C", 1, 0},
           Row{"mkdir t; cat two >t/t; ln -s ../t/t $C/config.json", "cat one >t/x; mv t/x t/t", 1, 0},
           Row{"mkdir t; cat two >t/t; ln -s ../t/t $C/config.json", "rm t/t; cat one >t/t", 1, 0},
           Row{"mkdir t; ln -s ../t/t $C/config.json", "cat one >t/t", 1, 0},
           Row{"mkdir t; cat two >t/t", "ln -s ../t/t $C/config.json; cat one >t/t", 1, 0},
           Row{"mkdir t u; cat two >t/t; cat one >u/t; ln -s t m; ln -s ../m/t $C/config.json",
               "ln -s u l; mv -T l m", 1, 0},
       }) {
    LiveWorld world;
    auto& base = world.base;
    const auto root = base.files.container->deletingLastPathComponent();
    AppConfigItem config;
    for (const auto* name : {"one", "two"}) {
      config.templates.emplace_back();
      test::writeFile(root.appendingPath(name), encodeConfig(config));
    }
    const auto run = [&](const char* script) {
      const auto longFolder =
          FileURL(base.files.container->appendingPath(relativeConfigPath)).deletingLastPathComponent();
      return std::system(
          ("cd '" + root.path() + "'; C=container; L='" + longFolder.path() + "'; IFS=; " + script).c_str());
    };
    base.makeFolder("container");
    ASSERT_EQ(run(row.before), 0) << row.before;
    const auto manager = ConfigManager::make();
    world.settle();
    base.takeLog();
    ASSERT_EQ(run(row.happens), 0) << row.happens;
    const auto shows = [&](std::size_t templates) {
      return eventually([&] { return manager->getConfig()->templates.size() == templates; });
    };
    EXPECT_TRUE(shows(row.templates)) << row.before << " | " << row.happens;
    std::size_t loads = 0;
    EXPECT_TRUE(eventually([&] { return (loads += base.takeLog().size()) >= row.loads; })) << row.happens;
    world.settle();
    loads += base.takeLog().size();
    EXPECT_TRUE(row.loads == 0 || loads == row.loads) << loads << " loads: " << row.happens;
    const auto next = base.files.container->appendingPath("config.json");
    std::filesystem::remove(next.path());
    EXPECT_TRUE(shows(11)) << row.happens;
    test::writeFile(next, document(0));
    EXPECT_TRUE(shows(3)) << row.happens;
  }
}

TEST_F(LiveStore, LoadsASaveOnceWhileSomebodyMakesFilesAboveIt) {
  std::promise<void> mayGoOn;
  base.takeLog();
  sources.async([&] { mayGoOn.get_future().wait(); });
  base.makeFile("elsewhere", "");
  std::filesystem::resize_file(file.path(), 0);
  mayGoOn.set_value();
  settle();
  EXPECT_EQ(base.takeLog().size(), 1U);
}

TEST_F(LiveStore, AnswersWithTheLastDocumentWhileALargeOneIsRead) {
  std::promise<void> mayEnd;
  const auto end = mayEnd.get_future().share();
  std::atomic<int> reads = 0;
  std::atomic<int> changes = 0;
  manager->onChange([&] {
    static_cast<void>(manager->getConfig());  // as who is told does
    ++changes;
  });
  base.files.beforeReading = [&] {
    ++reads;
    end.wait();
  };
  std::thread first([&] { manager->reload(); });
  std::thread second([&] { manager->reload(); });
  ASSERT_TRUE(eventually([&] { return reads == 1; }));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(manager->getConfig()->version, 0);
  EXPECT_GE(std::chrono::steady_clock::now() - start, ConfigManager::readersPatience);
  EXPECT_EQ(reads, 1) << "of two loads at once";
  EXPECT_EQ(changes, 0);
  mayEnd.set_value();
  first.join();
  second.join();
  EXPECT_EQ(changes, 2);
}

TEST_F(LiveStore, TakesInWhatIsSavedBeforeItWatches) {
  std::promise<void> mayGoOn;
  sources.async([&] { mayGoOn.get_future().wait(); });
  manager = ConfigManager::make();
  EXPECT_EQ(manager->getConfig()->version, 0) << "is there for the first menu";
  writeInPlace(1);
  mayGoOn.set_value();
  EXPECT_TRUE(shows(1));
}

TEST_F(LiveStore, SaysOnceThatItCantWatchAndThenLooksInTheBackground) {
  sources.isAtLimit = true;
  for (std::int64_t version = 1; version <= 3; ++version) {
    writeInPlace(version);
    ASSERT_TRUE(shows(version)) << "the old source goes on";
  }
  base.takeLog();
  replace(4);
  ASSERT_TRUE(shows(4));
  settle();
  const auto log = base.takeLog();
  EXPECT_EQ(
      std::count_if(log.begin(), log.end(), [](const auto& line) { return line.starts_with("Can't watch"); }),
      1);
  // One that can watch nothing at all, and nobody asks it for a menu.
  manager = ConfigManager::make();
  settle();
  std::atomic<int> changes = 0;
  manager->onChange([&] { ++changes; });
  writeInPlace(5);
  // While nobody asks; the first change may have been its emptying.
  EXPECT_TRUE(eventually([&] { return changes > 0; }) && shows(5));
}

TEST_F(LiveStore, GivesReadersWholeDocumentsOnlyWhileItIsReloaded) {
  std::atomic<bool> isDone = false;
  std::atomic<int> reads = 0;
  const auto read = [&] {
    while (!isDone) {
      const auto config = manager->getConfig();
      const auto count = config->templates.size();
      EXPECT_TRUE(count == 3 || count == defaultFallbackConfig().templates.size()) << count;
      ++reads;
    }
  };
  std::thread first(read);
  std::thread second(read);
  for (std::int64_t version = 1; version <= 300; ++version) {
    version % 3 == 0 ? replace(version) : writeInPlace(version);
    if (version % 50 == 0) manager->reload();
  }
  EXPECT_TRUE(shows(300));
  isDone = true;
  first.join();
  second.join();
  EXPECT_GT(reads, 0);
}

TEST_F(LiveStore, CanGoInTheMiddleOfASave) {
  for (std::int64_t version = 1; version <= 50; ++version) {
    writeInPlace(version);
    manager = ConfigManager::make();
  }
  writeInPlace(51);
  EXPECT_TRUE(shows(51));
}

}  // namespace
}  // namespace sprig
