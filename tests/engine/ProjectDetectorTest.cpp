// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ProjectDetector.h"

#include <gtest/gtest.h>

#include <set>

#include "support/TestPlatform.h"

namespace sprig {
namespace {

using Types = std::set<std::string>;

struct Detector : testing::Test {
  test::TestPlatform platform;
  ProjectDetector detector;

  Types typesOf(const platform::FileURL& folder) {
    const auto types = detector.detectProjectTypes(folder);
    Types distinct(types.begin(), types.end());
    EXPECT_EQ(distinct.size(), types.size()) << "a type is listed twice";
    return distinct;
  }
};

TEST_F(Detector, KnowsProjectsByTheirMarkers) {
  struct Row {
    std::vector<std::string> entries;
    Types types;
  };
  const Row rows[] = {
      {{"package.json", "tsconfig.json"}, {"node", "javascript", "typescript"}},
      {{"next.config.mjs"}, {"nextjs", "react", "web"}},
      {{"vite.config.ts", "astro.config.mjs"}, {"vite", "astro", "web"}},
      {{"nuxt.config.ts"}, {"nuxt", "vue", "web"}},
      {{"angular.json", "tsconfig.json"}, {"angular", "typescript", "web"}},
      {{"Cargo.toml", "go.mod", "composer.json", "Gemfile", "Package.swift"},
       {"rust", "go", "php", "ruby", "swift"}},
      {{"pyproject.toml"}, {"python"}},
      {{"requirements.txt"}, {"python"}},
      {{"Pipfile"}, {"python"}},
      {{"Dockerfile"}, {"docker", "devops"}},
      {{"docker-compose.yml"}, {"docker", "devops"}},
      {{"docker-compose.yaml"}, {"docker", "devops"}},
      {{"next.config", "Next.config.js", "package.JSON", "Cargo.toml.bak", "my go.mod"}, {}},
  };
  int number = 0;
  for (const auto& row : rows) {
    const auto name = "home/p" + std::to_string(number++);
    const auto folder = platform.makeFolder(name);
    // The names count, whatever they stand for.
    for (const auto& entry : row.entries) platform.makeFolder(name + "/" + entry);
    EXPECT_EQ(typesOf(folder), row.types) << row.entries.front();
  }
}

TEST_F(Detector, LooksIntoThreeFoldersAboveButNotAboveHome) {
  platform.makeFile("go.mod");
  platform.makeFile("home/Gemfile");
  platform.makeFile("home/jobs/Cargo.toml");
  platform.makeFile("home/jobs/app/composer.json");
  const auto components = platform.makeFolder("home/jobs/app/src/components");
  EXPECT_EQ(typesOf(components), (Types{"rust", "php"}));
  EXPECT_EQ(typesOf(components.deletingLastPathComponent()), (Types{"rust", "php", "ruby"}));
  EXPECT_EQ(typesOf(platform.files.home), (Types{"ruby"}));
  EXPECT_EQ(typesOf(platform.makeFolder("elsewhere/deep")), (Types{"go"}));
  EXPECT_EQ(typesOf(platform.folder.url().appendingPath("missing")), Types{})
      << "an unlisted folder ends the climb";
}

TEST_F(Detector, AnswersFromMemoryForTenSeconds) {
  const auto folder = platform.makeFolder("home/a");
  EXPECT_EQ(typesOf(folder), Types{});
  platform.makeFile("home/a/go.mod");
  platform.clock.instant += std::chrono::milliseconds(9999);
  EXPECT_EQ(typesOf(folder.appendingPath("b/../.")), Types{}) << "one entry for all spellings";
  platform.clock.instant += std::chrono::milliseconds(1);
  EXPECT_EQ(typesOf(folder), Types{"go"});
  platform.makeFile("home/a/Gemfile");
  platform.clock.instant -= std::chrono::hours(1);
  EXPECT_EQ(typesOf(folder), Types{"go"}) << "an answer from the future is fresh";
  EXPECT_NE(&ProjectDetector::shared(), &detector);
  EXPECT_EQ(&ProjectDetector::shared(), &ProjectDetector::shared());
}

}  // namespace
}  // namespace sprig
