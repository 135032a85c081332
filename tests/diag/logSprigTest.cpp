// SPDX-License-Identifier: GPL-3.0-or-later

#include "diag/logSprig.h"

#include <gtest/gtest.h>

#include "support/TestPlatform.h"

namespace sprig {
namespace {

using test::TestPlatform;

struct LogSprig : testing::Test {
  TestPlatform platform;
  platform::FileURL file = platform.users.home->appendingPath(".kestrel/sprig/extension.log");
};

TEST_F(LogSprig, AddsALineToBothLogs) {
  platform.clock.zone = std::chrono::hours(5);
  logSprig("\xFF");
  EXPECT_TRUE(platform.files.fileExists(file.deletingLastPathComponent()));
  logSprig("first");
  EXPECT_EQ(test::readFile(file), "[2026-11-16 09:05:02 +0000] first\n");
  platform.clock.instant = test::TestClock::at(1969, 12, 31, 23, 59, 59);
  logSprig("100% of %@ %s\nsecond line");
  logSprig("folder \xFF");
  logSprig("");
  EXPECT_EQ(test::readFile(file),
            "[2026-11-16 09:05:02 +0000] first\n"
            "[1969-12-31 23:59:59 +0000] 100% of %@ %s\nsecond line\n"
            "[1969-12-31 23:59:59 +0000] \n");
  EXPECT_EQ(platform.systemLog.lines(),
            (std::vector<std::string>{"[SprigFinder] \xFF", "[SprigFinder] first",
                                      "[SprigFinder] 100% of %@ %s\nsecond line", "[SprigFinder] folder \xFF",
                                      "[SprigFinder] "}))
      << "text that is not Unicode stays out of the file";
}

TEST_F(LogSprig, LosesTheLineOfTheFileQuietlyWhereItCantBeWritten) {
  platform.makeFile("account/.kestrel", "in the way");
  logSprig("one");
  const auto home = *std::exchange(platform.users.home, std::nullopt);
  logSprig("two");
  EXPECT_EQ(platform.systemLog.lines().size(), 2U);
  EXPECT_EQ(test::namesIn(home), std::vector<std::string>{".kestrel"});
  EXPECT_EQ(test::readFile(home.appendingPath(".kestrel")), "in the way");
}

}  // namespace
}  // namespace sprig
