#include "ports/linux/ChangeLoop.h"

#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace sprig::ports {

namespace {

constexpr std::uint64_t wakeId = 0;

Descriptor required(int descriptor, const char* call) {
  if (descriptor == -1) throw std::system_error(errno, std::generic_category(), call);
  return Descriptor(descriptor);
}

/// Signals are for the threads that expect them.
std::thread threadWithoutSignals(auto function) {
  sigset_t all;
  sigset_t before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread thread(function);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

}  // namespace

ChangeLoop::ChangeLoop()
    : epoll(required(::epoll_create1(EPOLL_CLOEXEC), "epoll_create1")),
      wake(required(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC), "eventfd")) {
  epoll_event event = {};
  event.events = EPOLLIN;
  event.data.u64 = wakeId;
  if (::epoll_ctl(epoll.get(), EPOLL_CTL_ADD, wake.get(), &event) == -1) {
    throw std::system_error(errno, std::generic_category(), "epoll_ctl");
  }
  thread = threadWithoutSignals([this] { run(); });
}

void ChangeLoop::end() {
  {
    const std::lock_guard guard(lock);
    isEnding = true;
    ::eventfd_write(wake.get(), 1);
  }
  thread.join();
  // Another thread may get the same identity now.
  const std::lock_guard guard(lock);
  backgroundThread = {};
}

std::shared_ptr<ChangeLoop::Source> ChangeLoop::add(const platform::FileURL& location,
                                                    platform::FileEvents events) {
  auto watch = InotifyWatch::on(location, events);
  // The new source sees what happens from here on; those it may take over from have seen all before.
  if (isOnBackgroundThread()) settleCancelled();
  if (!watch) return nullptr;
  auto source = std::make_shared<Source>();
  const std::lock_guard guard(lock);
  epoll_event event = {};  // no events before resume
  event.data.u64 = ++lastId;
  if (::epoll_ctl(epoll.get(), EPOLL_CTL_ADD, watch->descriptor(), &event) == -1) return nullptr;
  source->id = lastId;
  source->watch = std::move(watch);
  sources.emplace(lastId, source);
  return source;
}

void ChangeLoop::resume(const std::shared_ptr<Source>& source, Handler handler) {
  const std::lock_guard guard(lock);
  if (source->isCancelled) return;
  source->handler = std::make_shared<Handler>(std::move(handler));
  epoll_event event = {};
  event.events = EPOLLIN;
  event.data.u64 = source->id;
  ::epoll_ctl(epoll.get(), EPOLL_CTL_MOD, source->watch->descriptor(), &event);
}

void ChangeLoop::cancel(const std::shared_ptr<Source>& source) {
  std::shared_ptr<Handler> retired;  // goes after the guard
  const std::lock_guard guard(lock);
  if (std::exchange(source->isCancelled, true)) return;
  if (std::this_thread::get_id() == backgroundThread) {
    unsettled.push_back(source);
  } else {
    retired = settle(source);
  }
}

std::shared_ptr<ChangeLoop::Handler> ChangeLoop::settle(const std::shared_ptr<Source>& source) {
  source->watch->stop();
  while (const auto count = source->watch->takeEvents()) source->undelivered += *count;
  source->watch.reset();
  sources.erase(source->id);
  const bool isLastCallDue = source->handler && source->undelivered > 0 && !isEnding;
  if (!isLastCallDue) return std::move(source->handler);
  lastCalls.push_back(source);
  ::eventfd_write(wake.get(), 1);
  return nullptr;
}

void ChangeLoop::run() {
  ::pthread_setname_np(::pthread_self(), "sprig-changes");
  {
    const std::lock_guard guard(lock);
    backgroundThread = std::this_thread::get_id();
  }
  std::array<epoll_event, 16> ready{};
  while (!isEndReached()) {
    const int count = ::epoll_wait(epoll.get(), ready.data(), static_cast<int>(ready.size()), -1);
    for (int index = 0; index < count; ++index) {
      deliverReady(ready[static_cast<std::size_t>(index)].data.u64);
    }
    deliverLastCalls();
  }
}

void ChangeLoop::deliverReady(std::uint64_t id) {
  std::shared_ptr<Source> source;
  {
    const std::lock_guard guard(lock);
    const auto found = sources.find(id);
    if (found == sources.end()) return;
    source = found->second;
    source->undelivered += source->watch->takeEvents().value_or(0);
  }
  deliver(source);
}

void ChangeLoop::deliverLastCalls() {
  eventfd_t count = 0;
  ::eventfd_read(wake.get(), &count);
  for (;;) {
    std::shared_ptr<Source> source;
    {
      const std::lock_guard guard(lock);
      if (lastCalls.empty()) return;
      source = std::move(lastCalls.front());
      lastCalls.erase(lastCalls.begin());
    }
    deliver(source);
  }
}

void ChangeLoop::deliver(const std::shared_ptr<Source>& source) {
  for (;;) {
    std::shared_ptr<Handler> handler;
    {
      const std::lock_guard guard(lock);
      if (source->undelivered == 0) return;
      source->undelivered = source->isCancelled ? 0 : source->undelivered - 1;
      // Held here while it runs: it may destroy its source.
      handler = source->isCancelled ? std::move(source->handler) : source->handler;
    }
    if (!handler) return;
    (*handler)();
    handler.reset();
    settleCancelled();
  }
}

void ChangeLoop::settleCancelled() {
  for (;;) {
    std::shared_ptr<Handler> retired;  // goes after the guard
    const std::lock_guard guard(lock);
    if (unsettled.empty()) return;
    const auto source = std::move(unsettled.back());
    unsettled.pop_back();
    retired = settle(source);
  }
}

bool ChangeLoop::isOnBackgroundThread() {
  const std::lock_guard guard(lock);
  return std::this_thread::get_id() == backgroundThread;
}

bool ChangeLoop::isEndReached() {
  const std::lock_guard guard(lock);
  return isEnding && lastCalls.empty();
}

}  // namespace sprig::ports
