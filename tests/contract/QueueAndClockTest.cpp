// SPDX-License-Identifier: GPL-3.0-or-later

#include "contract/MainQueueContract.h"

#include <poll.h>

#include "contract/Process.h"
#include "ports/linux/LinuxClock.h"
#include "ports/linux/LinuxMainQueue.h"

namespace sprig::test {
namespace {

class QueueWorld {
 public:
  platform::MainQueue& queue() { return mainQueue; }
  void runPending() { mainQueue.runPending(); }

 private:
  ports::LinuxMainQueue mainQueue;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Of, MainQueueContract, QueueWorld);

TEST(LinuxClock, TellsDateAndTimeInTheZoneThatIsSetAndItsSummerTime) {
  struct Row {
    const char* zone;
    std::int64_t milliseconds;  // since the epoch
    std::array<int, 6> expected;
  };
  const char* centralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";
  const ports::LinuxClock clock;
  for (const Row& row : {Row{"UTC", 0, {1970, 1, 1, 0, 0, 0}}, Row{"UTC", -1, {1969, 12, 31, 23, 59, 59}},
                         Row{"UTC", 951'782'399'999, {2000, 2, 28, 23, 59, 59}},
                         Row{"UTC", 951'782'400'000, {2000, 2, 29, 0, 0, 0}},
                         Row{"UTC", 4'107'542'400'000, {2100, 3, 1, 0, 0, 0}},
                         Row{"UTC", 10'413'792'000'000, {2300, 1, 1, 0, 0, 0}},
                         Row{centralEurope, 1'768'478'400'000, {2026, 1, 15, 13, 0, 0}},
                         Row{centralEurope, 1'784'116'800'000, {2026, 7, 15, 14, 0, 0}},
                         Row{"XXX5", 1'784'116'800'000, {2026, 7, 15, 7, 0, 0}}}) {
    const ScopedVariable zone("TZ", row.zone);
    const auto is = clock.components(platform::Instant(std::chrono::milliseconds(row.milliseconds)));
    EXPECT_EQ((std::array{is.year, is.month, is.day, is.hour, is.minute, is.second}), row.expected);
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
