// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigManager.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <utility>

#include "config/BuiltinTemplates.h"
#include "config/ConfigEncoder.h"
#include "support/TestPlatform.h"

namespace sprig {
namespace {

using Lines = std::vector<std::string>;

std::string documentOf(int templates, int disabled = 0) {
  AppConfigItem config;
  for (int number = 0; number < templates; ++number) {
    config.templates.emplace_back().enabled = number >= disabled;
  }
  return encodeConfig(config);
}

struct Store : testing::Test {
  test::TestPlatform platform;
  const std::string longPath = relativeConfigPath;
  platform::FileURL container = *platform.files.container;
  platform::FileURL fallback = platform.files.ownHome.appendingPath(longPath);

  std::size_t templatesInForce(const ConfigManager& manager) { return manager.getConfig()->templates.size(); }
};

TEST_F(Store, LooksInFourPlacesAndTakesTheFirstThatExists) {
  EXPECT_EQ(ConfigManager::configURL(), fallback);
  const auto inHome = platform.makeFile("account/" + longPath);
  EXPECT_EQ(ConfigManager::configURL(), inHome);
  const auto shortOne = platform.makeFile("container/config.json");
  EXPECT_EQ(ConfigManager::configURL(), shortOne);
  const auto longOne = platform.makeFolder("container/" + longPath);
  EXPECT_EQ(ConfigManager::configURL(), longOne) << "a folder of that name counts, too";
  platform.files.container.reset();
  EXPECT_EQ(ConfigManager::configURL(), inHome);
  platform.users.home.reset();
  EXPECT_EQ(ConfigManager::configURL(), fallback);
}

TEST_F(Store, OffersTheBuiltinTemplatesWhereNothingIsFound) {
  const auto manager = ConfigManager::make();
  EXPECT_EQ(*manager->getConfig(), defaultFallbackConfig());
  EXPECT_EQ(platform.takeLog(),
            Lines{"Config not found at " + fallback.path() + ", using defaultFallbackConfig"});
  EXPECT_EQ(platform.files.entryKind(fallback.deletingLastPathComponent()), platform::EntryKind::directory)
      << "the folder is made, to be watched";
}

TEST_F(Store, LogsTheOutcomeOfEveryLoadAndForgetsTheLastGoodDocument) {
  const auto file = platform.writeConfig(documentOf(5, 2));
  const auto manager = ConfigManager::make();
  EXPECT_EQ(templatesInForce(*manager), 5U);
  platform.writeConfig(documentOf(0));
  manager->reload();
  EXPECT_EQ(templatesInForce(*manager), 0U);
  platform.writeConfig("{\n  broken");
  manager->reload();
  EXPECT_EQ(*manager->config(), defaultFallbackConfig());
  EXPECT_EQ(manager->problem(), "line 2, column 3: syntax error at \"b\"");
  platform.files.beforeReading = [] { throw std::bad_alloc(); };
  manager->reload();
  platform.files.beforeReading = nullptr;
  unlink(file.path().c_str());
  platform.makeFolder("container/config.json");
  manager->reload();
  const auto log = platform.takeLog();
  ASSERT_EQ(log.size(), 5U);
  EXPECT_EQ(log[0], "Loaded config with 5 total templates (3 active) from " + file.path());
  EXPECT_EQ(log[1], "Loaded config with 0 total templates (0 active) from " + file.path());
  EXPECT_EQ(log[2], "Error decoding config.json: line 2, column 3: syntax error at \"b\". Using fallback.");
  EXPECT_EQ(log[3], "Error decoding config.json: there is not enough memory for it. Using fallback.");
  EXPECT_TRUE(log[4].starts_with("Error decoding config.json: Can't read ")) << log[4];
  EXPECT_TRUE(log[4].ends_with(". Using fallback.")) << log[4];
}

TEST_F(Store, MovesToAPlaceOfHigherPriorityAtTheNextLoadAndLeavesSnapshotsAsTheyWere) {
  platform.writeConfig(documentOf(1));
  const auto manager = ConfigManager::make();
  const auto before = manager->getConfig();
  platform.makeFile("container/" + longPath, documentOf(2));
  EXPECT_EQ(templatesInForce(*manager), 1U);
  manager->reloadIfChanged();
  EXPECT_EQ(templatesInForce(*manager), 2U);
  EXPECT_EQ(before->templates.size(), 1U);
}

TEST_F(Store, ReloadsOnceForEachEventOfTheFileAndItsFolder) {
  const auto file = platform.writeConfig(documentOf(1));
  const auto manager = ConfigManager::make();
  platform.takeLog();
  for (const auto& location : {file, file.deletingLastPathComponent(), file}) {
    const auto handler = std::exchange(platform.fileChanges.handlers.at(location), nullptr);
    handler();
  }
  EXPECT_EQ(platform.takeLog().size(), 3U);
}

}  // namespace
}  // namespace sprig
