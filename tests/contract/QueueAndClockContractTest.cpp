#include "contract/QueueAndClockContract.h"

#include <poll.h>

#include "contract/Process.h"
#include "ports/linux/LinuxClock.h"
#include "ports/linux/LinuxMainQueue.h"
#include "support/TestPlatform.h"

namespace sprig::test {
namespace {

template <typename Queue>
class QueueWorld {
 public:
  platform::MainQueue& queue() { return mainQueue; }
  void runPending() { mainQueue.runPending(); }

 private:
  Queue mainQueue;
};

using QueueWorlds = testing::Types<QueueWorld<ports::LinuxMainQueue>, QueueWorld<TestMainQueue>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Of, MainQueueContract, QueueWorlds);

template <typename Clock>
class ClockWorld {
 public:
  platform::Clock& clock() { return userClock; }

 private:
  ScopedVariable zone{"TZ", "UTC"};
  Clock userClock;
};

using ClockWorlds = testing::Types<ClockWorld<ports::LinuxClock>, ClockWorld<TestClock>>;
INSTANTIATE_TYPED_TEST_SUITE_P(Of, ClockContract, ClockWorlds);

TEST(LinuxClock, FollowsTheZoneAndItsSummerTimeWhileTheProgramRuns) {
  struct Row {
    const char* zone;
    int hourInWinter;
    int hourInSummer;
  };
  const ports::LinuxClock clock;
  for (const Row& row : {Row{"UTC", 12, 12}, Row{"CET-1CEST,M3.5.0,M10.5.0/3", 13, 14}, Row{"XXX5", 7, 7}}) {
    const ScopedVariable zone("TZ", row.zone);
    EXPECT_EQ(clock.components(TestClock::at(2026, 1, 15, 12, 0, 0)).hour, row.hourInWinter) << row.zone;
    EXPECT_EQ(clock.components(TestClock::at(2026, 7, 15, 12, 0, 0)).hour, row.hourInSummer) << row.zone;
  }
}

bool isReadable(int descriptor) {
  pollfd question = {descriptor, POLLIN, 0};
  return ::poll(&question, 1, 0) == 1;
}

TEST(LinuxMainQueue, IsReadableForEventLoopsExactlyWhileWorkWaits) {
  ports::LinuxMainQueue queue;
  EXPECT_FALSE(isReadable(queue.descriptor()));
  queue.async([&] { EXPECT_TRUE(isReadable(queue.descriptor())); });
  queue.async([&] {
    EXPECT_FALSE(isReadable(queue.descriptor()));
    queue.async([] {});
  });
  queue.runPending();
  EXPECT_TRUE(isReadable(queue.descriptor()));
  queue.runPending();
  EXPECT_FALSE(isReadable(queue.descriptor()));
}

TEST(LinuxMainQueue, RunsUntilToldAndLeavesTheRestOfTheWork) {
  ports::LinuxMainQueue queue;
  bool isOver = false;
  bool hasRunMore = false;
  std::thread thread([&] {
    queue.async([&] { isOver = true; });
    queue.async([&] { hasRunMore = true; });
  });
  queue.run([&] { return isOver; });
  EXPECT_FALSE(hasRunMore);
  thread.join();
  queue.runPending();
  EXPECT_TRUE(hasRunMore);
}

}  // namespace
}  // namespace sprig::test
