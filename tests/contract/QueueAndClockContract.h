#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/Clock.h"
#include "platform/MainQueue.h"
#include "support/Eventually.h"

namespace sprig::test {

/// What every main queue owes. `World` is made on the main thread and has `platform::MainQueue& queue()` and
/// `runPending()`, which runs the work that waits.
template <typename World>
class MainQueueContract : public testing::Test {
 protected:
  World world;
};

TYPED_TEST_SUITE_P(MainQueueContract);

TYPED_TEST_P(MainQueueContract, RunsWorkLaterOnTheMainThreadInTheOrderSubmitted) {
  auto& queue = this->world.queue();
  constexpr int perThread = 200;
  std::array<std::vector<int>, 3> order;
  std::vector<std::thread> threads;
  for (auto& mine : order) {
    threads.emplace_back([&] {
      EXPECT_FALSE(queue.isMainThread());
      for (int number = 0; number < perThread; ++number) {
        queue.async([&, number] {
          EXPECT_TRUE(queue.isMainThread());
          mine.push_back(number);
        });
      }
    });
  }
  for (auto& thread : threads) thread.join();
  for (const auto& mine : order) EXPECT_TRUE(mine.empty());
  this->world.runPending();
  for (const auto& mine : order) {
    ASSERT_EQ(mine.size(), std::size_t{perThread});
    EXPECT_TRUE(std::is_sorted(mine.begin(), mine.end()));
  }
}

TYPED_TEST_P(MainQueueContract, DoesNotRunSubmittedWorkAtOnceOnTheMainThreadEither) {
  std::string order;
  this->world.queue().async([&] {
    this->world.queue().async([&] { order += "later"; });
    order += "now ";
  });
  EXPECT_EQ(order, "");
  while (order != "now later" && order.size() < 9) this->world.runPending();
  EXPECT_EQ(order, "now later");
}

TYPED_TEST_P(MainQueueContract, RunsTheRestOfTheWorkInALoopThatWorkSpins) {
  std::string order;
  this->world.queue().async([&] {
    order += "a";
    this->world.runPending();
    order += "d";
  });
  this->world.queue().async([&] { order += "b"; });
  this->world.queue().async([&] { order += "c"; });
  this->world.runPending();
  EXPECT_EQ(order, "abcd");
}

TYPED_TEST_P(MainQueueContract, LetsOtherThreadsWaitForTheirWork) {
  int value = 0;
  Tally done;
  std::thread thread([&] {
    for (int round = 1; round <= 50; ++round) {
      this->world.queue().sync([&] { value = round; });
      EXPECT_EQ(value, round);
    }
    done.add();
  });
  EXPECT_TRUE(eventually([&] {
    this->world.runPending();
    return done.count() == 1;
  }));
  thread.join();
}

TYPED_TEST_P(MainQueueContract, DropsWorkOnceItHasRun) {
  const auto held = std::make_shared<int>();
  this->world.queue().async([held] {});
  this->world.runPending();
  EXPECT_EQ(held.use_count(), 1);
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract, RunsWorkLaterOnTheMainThreadInTheOrderSubmitted,
                            DoesNotRunSubmittedWorkAtOnceOnTheMainThreadEither,
                            RunsTheRestOfTheWorkInALoopThatWorkSpins, LetsOtherThreadsWaitForTheirWork,
                            DropsWorkOnceItHasRun);

/// What every clock owes. `World` has `platform::Clock& clock()`, whose user lives in UTC.
template <typename World>
class ClockContract : public testing::Test {
 protected:
  World world;
};

TYPED_TEST_SUITE_P(ClockContract);

TYPED_TEST_P(ClockContract, TellsDateAndTimeOnTheGregorianCalendar) {
  using std::chrono::milliseconds;
  struct Row {
    milliseconds sinceEpoch;
    std::array<int, 6> expected;
  };
  const Row rows[] = {{milliseconds(0), {1970, 1, 1, 0, 0, 0}},
                      {milliseconds(-1), {1969, 12, 31, 23, 59, 59}},
                      {milliseconds(-86'400'000), {1969, 12, 31, 0, 0, 0}},
                      {milliseconds(999), {1970, 1, 1, 0, 0, 0}},
                      {milliseconds(951'782'399'999), {2000, 2, 28, 23, 59, 59}},
                      {milliseconds(951'782'400'000), {2000, 2, 29, 0, 0, 0}},
                      {milliseconds(4'107'542'400'000), {2100, 3, 1, 0, 0, 0}}};
  for (const auto& row : rows) {
    const auto is = this->world.clock().components(platform::Instant(row.sinceEpoch));
    EXPECT_EQ((std::array{is.year, is.month, is.day, is.hour, is.minute, is.second}), row.expected);
  }
}

REGISTER_TYPED_TEST_SUITE_P(ClockContract, TellsDateAndTimeOnTheGregorianCalendar);

}  // namespace sprig::test
