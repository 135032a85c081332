// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/LinuxMainQueue.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <cassert>
#include <cerrno>
#include <future>
#include <memory>
#include <system_error>
#include <utility>

namespace sprig::ports {

LinuxMainQueue::LinuxMainQueue() : readable(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (!readable.isOpen()) throw std::system_error(errno, std::generic_category(), "eventfd");
}

bool LinuxMainQueue::isMainThread() const { return std::this_thread::get_id() == mainThread; }

void LinuxMainQueue::async(Work work) {
  const std::lock_guard guard(lock);
  if (waiting.empty()) ::eventfd_write(readable.get(), 1);
  waiting.push_back(std::move(work));
}

void LinuxMainQueue::sync(Work work) {
  assert(!isMainThread());
  auto done = std::make_shared<std::promise<void>>();
  const auto outcome = done->get_future();
  async([work = std::move(work), done = std::move(done)] {
    work();
    done->set_value();
  });
  // Also over when the work was dropped with the queue.
  outcome.wait();
}

void LinuxMainQueue::runPending() {
  std::size_t count = 0;
  {
    const std::lock_guard guard(lock);
    count = waiting.size();
  }
  // Work may itself run the queue (a modal loop), so less may be left than was counted.
  while (count-- > 0 && runOne()) continue;
}

void LinuxMainQueue::run(const std::function<bool()>& until) {
  while (!until()) {
    pollfd waitFor = {readable.get(), POLLIN, 0};
    if (::poll(&waitFor, 1, -1) == 1) runOne();
  }
}

bool LinuxMainQueue::runOne() {
  Work work;
  {
    const std::lock_guard guard(lock);
    if (waiting.empty()) return false;
    work = std::move(waiting.front());
    waiting.pop_front();
    eventfd_t count = 0;
    if (waiting.empty()) ::eventfd_read(readable.get(), &count);
  }
  work();
  return true;
}

}  // namespace sprig::ports
