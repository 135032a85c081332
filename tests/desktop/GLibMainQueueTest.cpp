// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/GLibMainQueue.h"

#include "contract/MainQueueContract.h"

namespace sprig::test {
namespace {

class GLibQueueWorld {
 public:
  platform::MainQueue& queue() { return mainQueue; }
  void runPending() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) continue;
  }

 private:
  desktop::GLibMainQueue mainQueue;
};

INSTANTIATE_TYPED_TEST_SUITE_P(OfGLib, MainQueueContract, GLibQueueWorld);

TEST(GLibMainQueue, WakesALoopThatWaits) {
  desktop::GLibMainQueue queue;
  bool isOver = false;
  std::thread thread([&] { queue.async([&] { isOver = true; }); });
  while (!isOver) g_main_context_iteration(nullptr, TRUE);
  thread.join();
}

}  // namespace
}  // namespace sprig::test
