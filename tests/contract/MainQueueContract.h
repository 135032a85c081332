// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <thread>
#include <vector>

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

TYPED_TEST_P(MainQueueContract, RunsWorkLaterThatWorkSubmitsAndTheRestInALoopThatWorkSpins) {
  std::string order;
  const auto held = std::make_shared<int>();
  this->world.queue().async([&, held] {
    this->world.queue().async([&] { order += "d"; });
    order += "a";
    this->world.runPending();
    order += "e";
  });
  this->world.queue().async([&] { order += "b"; });
  this->world.queue().async([&] { order += "c"; });
  EXPECT_EQ(order, "");
  while (order.size() < 5) this->world.runPending();
  EXPECT_EQ(order, "abcde");
  EXPECT_EQ(held.use_count(), 1) << "what has run is dropped";
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

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract, RunsWorkLaterOnTheMainThreadInTheOrderSubmitted,
                            RunsWorkLaterThatWorkSubmitsAndTheRestInALoopThatWorkSpins,
                            LetsOtherThreadsWaitForTheirWork);

}  // namespace sprig::test
