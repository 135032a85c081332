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
  logSprig("first");
  EXPECT_EQ(platform.contentOf(file), "[2026-11-16 09:05:02 +0000] first\n");
  platform.clock.instant = test::TestClock::at(1969, 12, 31, 23, 59, 59);
  logSprig("100% of %@ %s\nsecond line");
  logSprig("");
  EXPECT_EQ(platform.contentOf(file),
            "[2026-11-16 09:05:02 +0000] first\n"
            "[1969-12-31 23:59:59 +0000] 100% of %@ %s\nsecond line\n"
            "[1969-12-31 23:59:59 +0000] \n");
  EXPECT_EQ(platform.systemLog.lines(),
            (std::vector<std::string>{"[SprigFinder] first", "[SprigFinder] 100% of %@ %s\nsecond line",
                                      "[SprigFinder] "}));
}

TEST_F(LogSprig, LosesTheLineOfTheFileQuietlyWhereItCantBeWritten) {
  platform.makeFile("home/.kestrel", "in the way");
  logSprig("one");
  platform.users.home.reset();
  logSprig("two");
  EXPECT_EQ(platform.systemLog.lines().size(), 2U);
  EXPECT_EQ(platform.entriesOf(platform.files.home), std::vector<std::string>{".kestrel"});
  EXPECT_EQ(platform.contentOf(platform.files.home.appendingPath(".kestrel")), "in the way");
}

TEST_F(LogSprig, KeepsTextThatIsNotUnicodeOutOfTheFile) {
  logSprig("before");
  logSprig("folder \xFF");
  logSprig("after");
  EXPECT_EQ(platform.contentOf(file),
            "[2026-11-16 09:05:02 +0000] before\n[2026-11-16 09:05:02 +0000] after\n");
}

TEST_F(LogSprig, LosesNoEarlierLineWhicheverOperationFails) {
  logSprig("kept");
  const auto kept = *platform.contentOf(file);
  // What fails on the way to an existing file: making the folder, the look whether it is there, the write.
  // When the look itself fails the file counts as missing and is begun anew.
  for (std::size_t operation = 1; operation <= 3; ++operation) {
    platform.faultyFiles.failOperation(operation);
    logSprig("next");
    EXPECT_TRUE(platform.faultyFiles.tripped());
    const auto content = *platform.contentOf(file);
    EXPECT_TRUE(operation == 2 || content.starts_with(kept)) << content;
    EXPECT_EQ(platform.entriesOf(file.deletingLastPathComponent()),
              std::vector<std::string>{"extension.log"});
    platform.makeFile("home/.kestrel/sprig/extension.log", kept);
  }
}

}  // namespace
}  // namespace sprig
