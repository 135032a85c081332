// The store with the kernel's own events: every way in which editors save, seen from other threads.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "app/FinderSync.h"
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

struct LiveStore : testing::Test {
  test::TestPlatform base;
  ports::InotifyFileChangeSources sources;
  platform::Platform services{
      base.files,   base.users,     base.process,   base.clock,  base.systemLog,   base.mainQueue, sources,
      base.volumes, base.workspace, base.creations, base.images, base.application, base.controller};
  platform::PlatformScope scope{services};
  FileURL file = base.writeConfig(document(0));
  FileURL folder = file.deletingLastPathComponent();
  std::shared_ptr<ConfigManager> manager = ConfigManager::make();

  bool shows(std::int64_t version) {
    return eventually([&] { return manager->getConfig()->version == version; });
  }
  void writeInPlace(std::int64_t version) { test::writeFile(file, document(version)); }
  void replace(std::int64_t version) {
    const auto temporary = folder.appendingPath("config.json.tmp");
    test::writeFile(temporary, document(version));
    std::filesystem::rename(temporary.path(), file.path());
  }
  void moveAwayAndRecreate(std::int64_t version) {
    std::filesystem::rename(file.path(), file.path() + "~");
    writeInPlace(version);
  }
  void deleteAndRecreate(std::int64_t version) {
    std::filesystem::remove(file.path());
    writeInPlace(version);
  }
  void swapLink(std::int64_t version) {
    const auto target = folder.appendingPath("v" + std::to_string(version % 2) + ".json");
    test::writeFile(target, document(version));
    const auto link = folder.path() + "/link";
    ASSERT_EQ(symlink(target.path().c_str(), link.c_str()), 0);
    std::filesystem::rename(link, file.path());
  }
  static std::ptrdiff_t openDescriptors() {
    std::filesystem::directory_iterator entries("/proc/self/fd");
    return std::distance(begin(entries), end(entries));
  }
};

TEST_F(LiveStore, FollowsTheFileHoweverItIsSaved) {
  std::int64_t version = 0;
  using Save = void (LiveStore::*)(std::int64_t);
  const Save saves[] = {&LiveStore::writeInPlace, &LiveStore::replace, &LiveStore::moveAwayAndRecreate,
                        &LiveStore::deleteAndRecreate, &LiveStore::swapLink};
  // Each way after each other way, since one save decides what is watched when the next one comes.
  for (const auto first : saves) {
    for (const auto second : saves) {
      (this->*first)(++version);
      ASSERT_TRUE(shows(version));
      (this->*second)(++version);
      ASSERT_TRUE(shows(version));
    }
  }
  std::filesystem::remove(file.path());
  EXPECT_TRUE(eventually([&] { return *manager->getConfig() == defaultFallbackConfig(); }));
  writeInPlace(++version);
  EXPECT_TRUE(shows(version));
}

TEST_F(LiveStore, ReloadsOnceForOneWriteInPlace) {
  base.takeLog();
  for (std::int64_t version = 1; version <= 5; ++version) {
    const auto text = document(version);
    const int descriptor = open(file.path().c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(descriptor);
    ASSERT_TRUE(shows(version));
  }
  replace(6);
  ASSERT_TRUE(shows(6));
  replace(7);
  ASSERT_TRUE(shows(7));
  EXPECT_GE(base.takeLog().size(), 5U + 2U);
}

TEST_F(LiveStore, KeepsItsNumberOfDescriptorsOverAThousandSaves) {
  writeInPlace(1);
  ASSERT_TRUE(shows(1));
  const auto before = openDescriptors();
  for (std::int64_t version = 2; version <= 1000; ++version) {
    version % 2 == 0 ? writeInPlace(version) : replace(version);
  }
  ASSERT_TRUE(shows(1000));
  writeInPlace(1001);
  ASSERT_TRUE(shows(1001)) << "still watched";
  // A reload that was still at work may have been counted before.
  EXPECT_TRUE(eventually([&] { return openDescriptors() <= before; }))
      << openDescriptors() << " now, " << before;
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

/// Whether a toolbar's menu is of one document, or of the built-in templates.
bool isWhole(const platform::Menu& menu) {
  const auto& items = menu.items;
  if (items.size() != 5) return items[0].title == defaultFallbackConfig().templates[0].name;
  return items[0].title == items[1].title && items[1].title == items[2].title;
}

TEST_F(LiveStore, HasMenusOfWholeDocumentsOnlyWhileItIsReloaded) {
  base.controller.targeted = folder;
  FinderSync finder;
  std::atomic<bool> isDone = false;
  std::thread editor([&] {
    for (std::int64_t version = 1; version <= 300; ++version) {
      version % 3 == 0 ? replace(version) : writeInPlace(version);
    }
    isDone = true;
  });
  const auto menuIsWhole = [&] { return isWhole(*finder.menu(platform::FIMenuKind::toolbarItemMenu)); };
  while (!isDone) EXPECT_TRUE(menuIsWhole());
  editor.join();
  const auto menuShowsTheLast = [&] {
    return finder.menu(platform::FIMenuKind::toolbarItemMenu)->items[0].title == "300";
  };
  EXPECT_TRUE(eventually(menuShowsTheLast));
}

TEST_F(LiveStore, TakesAHugeDocument) {
  AppConfigItem config;
  config.version = 1;
  config.templates.emplace_back().content.assign(100'000'000, 'x');
  test::writeFile(file, encodeConfig(config));
  EXPECT_TRUE(shows(1));
  writeInPlace(2);
  EXPECT_TRUE(shows(2));
}

TEST_F(LiveStore, CanGoInTheMiddleOfASave) {
  for (std::int64_t version = 1; version <= 50; ++version) {
    writeInPlace(version);
    manager = ConfigManager::make();
  }
  writeInPlace(51);
  EXPECT_TRUE(shows(51));
}

TEST(SharedStore, IsMadeOnceByWhoeverAsksFirst) {
  test::TestPlatform platform;
  std::vector<std::thread> threads;
  std::vector<ConfigManager*> found(8);
  for (std::size_t i = 0; i < found.size(); ++i) {
    threads.emplace_back([&found, i] { found[i] = &ConfigManager::shared(); });
  }
  for (auto& thread : threads) thread.join();
  for (const auto* manager : found) EXPECT_EQ(manager, found[0]);
  EXPECT_EQ(platform.takeLog().size(), 1U);
}

}  // namespace
}  // namespace sprig
