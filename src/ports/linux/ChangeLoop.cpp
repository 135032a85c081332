// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/ChangeLoop.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <iterator>
#include <system_error>
#include <utility>

#include "ports/linux/retrying.h"

namespace sprig::ports {

using platform::FileEvents;
using platform::FileURL;

namespace {

/// What desktops give to work in the background.
constexpr int backgroundNiceness = 10;

bool waitFor(const Descriptor& epoll, const Descriptor& descriptor, std::uint32_t events) {
  epoll_event event = {};
  event.events = events;
  event.data.fd = descriptor.get();
  return ::epoll_ctl(epoll.get(), EPOLL_CTL_ADD, descriptor.get(), &event) == 0;
}

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
      wake(required(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC), "eventfd")),
      mounts(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {
  if (!waitFor(epoll, wake, EPOLLIN)) {
    throw std::system_error(errno, std::generic_category(), "epoll_ctl");
  }
  if (mounts.isOpen()) waitFor(epoll, mounts, EPOLLPRI);
  hasInotify();
  thread = threadWithoutSignals([this] { run(); });
}

void ChangeLoop::end() {
  {
    const std::lock_guard guard(lock);
    isEnding = true;
    tasks.clear();
    wakeUp();
  }
  thread.join();
  // Another thread may get the same identity now.
  const std::lock_guard guard(lock);
  backgroundThread = {};
}

std::shared_ptr<ChangeLoop::Source> ChangeLoop::add(const FileURL& location, FileEvents events) {
  auto source = std::make_shared<Source>();
  {
    const std::lock_guard guard(lock);
    if (hasInotify()) {
      // What has happened already is for those that share a mark with the new source, and not for it.
      takeEvents();
      source->watch = startWatch(location, events);
    }
    if (source->watch) sources.push_back(source);
  }
  // The new source sees what happens from here on; those it may take over from have seen all before.
  if (isOnBackgroundThread()) closeCancelled();
  return source->watch ? source : nullptr;
}

bool ChangeLoop::hasInotify() {
  if (inotify.isOpen()) return true;
  Descriptor made(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!made.isOpen() || !waitFor(epoll, made, EPOLLIN)) return false;
  inotify = std::move(made);
  return true;
}

std::unique_ptr<InotifyWatch> ChangeLoop::startWatch(const FileURL& location, FileEvents events) {
  // What is at the location may be replaced between looking and watching: then once more.
  for (int attempts = 0; attempts < 100; ++attempts) {
    auto watch = InotifyWatch::start(inotify.get(), location, events);
    if (!watch || watch->isAtLocation()) return watch;
    release(watch->mark());
  }
  return nullptr;
}

void ChangeLoop::resume(const std::shared_ptr<Source>& source, Handler handler) {
  const std::lock_guard guard(lock);
  if (source->isCancelled) return;
  source->handler = std::make_shared<Handler>(std::move(handler));
  wakeUp();
}

void ChangeLoop::cancel(const std::shared_ptr<Source>& source) {
  std::shared_ptr<Handler> retired;  // goes after the guard
  const std::lock_guard guard(lock);
  if (std::exchange(source->isCancelled, true)) return;
  if (std::this_thread::get_id() == backgroundThread) {
    cancelledByHandlers.push_back(source);
  } else {
    retired = closeSource(source);
  }
}

void ChangeLoop::asyncAfter(std::chrono::milliseconds delay, Handler task) {
  const std::lock_guard guard(lock);
  if (isEnding) return;
  tasks.push_back({std::chrono::steady_clock::now() + delay, std::move(task)});
  wakeUp();
}

std::shared_ptr<ChangeLoop::Handler> ChangeLoop::closeSource(const std::shared_ptr<Source>& source) {
  takeEvents();
  const int mark = source->watch->mark();
  std::erase(sources, source);
  source->watch.reset();
  release(mark);
  const bool isLastCallDue = source->handler && source->undelivered > 0 && !isEnding;
  if (!isLastCallDue) return std::move(source->handler);
  lastCalls.push_back(source);
  wakeUp();
  return nullptr;
}

void ChangeLoop::release(int mark) {
  const auto shares = [mark](const auto& source) { return source->watch->mark() == mark; };
  if (std::none_of(sources.begin(), sources.end(), shares)) ::inotify_rm_watch(inotify.get(), mark);
}

void ChangeLoop::wakeUp() { ::eventfd_write(wake.get(), 1); }

void ChangeLoop::takeEvents() {
  alignas(inotify_event) std::array<char, 4096> buffer{};
  for (;;) {
    const ssize_t size = retrying([&] { return ::read(inotify.get(), buffer.data(), buffer.size()); });
    if (size <= 0) return;
    for (std::size_t position = 0; position < static_cast<std::size_t>(size);) {
      const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + position);
      note(event);
      position += sizeof event + event.len;
    }
    // Whoever takes them need not be the one who delivers them.
    wakeUp();
  }
}

void ChangeLoop::note(const inotify_event& event) {
  // When events were lost, they may have been anybody's.
  const bool isLoss = (event.mask & IN_Q_OVERFLOW) != 0;
  for (const auto& source : sources) {
    auto& watch = *source->watch;
    if (isLoss || (watch.mark() == event.wd && watch.isWanted(event))) ++source->undelivered;
  }
}

void ChangeLoop::noteMounts() {
  for (const auto& source : sources) {
    if (source->watch->wants(FileEvents::mounted)) ++source->undelivered;
  }
}

void ChangeLoop::run() {
  ::pthread_setname_np(::pthread_self(), "sprig-changes");
  // Of this thread alone: what the user does comes before what it does.
  ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), backgroundNiceness);
  {
    const std::lock_guard guard(lock);
    backgroundThread = std::this_thread::get_id();
  }
  std::array<epoll_event, 4> ready{};
  while (!isEndReached()) {
    const int count =
        ::epoll_wait(epoll.get(), ready.data(), static_cast<int>(ready.size()), timeToNextTask());
    eventfd_t wakes = 0;
    ::eventfd_read(wake.get(), &wakes);
    for (int index = 0; index < count; ++index) {
      const std::lock_guard guard(lock);
      if (ready[static_cast<std::size_t>(index)].data.fd == mounts.get()) noteMounts();
    }
    // Taken before the events: all that had happened when a task was handed over is among those.
    const auto due = takeDueTasks();
    deliverReady();
    deliverLastCalls();
    runTasks(due);
  }
}

void ChangeLoop::deliverReady() {
  std::vector<std::shared_ptr<Source>> ready;
  {
    const std::lock_guard guard(lock);
    if (isEnding) return;
    takeEvents();
    std::copy_if(sources.begin(), sources.end(), std::back_inserter(ready),
                 [](const auto& source) { return source->handler && source->undelivered > 0; });
  }
  for (const auto& source : ready) deliver(source);
}

int ChangeLoop::timeToNextTask() {
  const std::lock_guard guard(lock);
  const auto next = std::min_element(
      tasks.begin(), tasks.end(), [](const auto& left, const auto& right) { return left.due < right.due; });
  if (next == tasks.end()) return -1;
  const auto time =
      std::chrono::ceil<std::chrono::milliseconds>(next->due - std::chrono::steady_clock::now());
  return static_cast<int>(std::clamp<std::int64_t>(time.count(), 0, INT_MAX));
}

std::vector<ChangeLoop::Handler> ChangeLoop::takeDueTasks() {
  std::vector<Handler> due;
  const std::lock_guard guard(lock);
  const auto now = std::chrono::steady_clock::now();
  const auto later =
      std::stable_partition(tasks.begin(), tasks.end(), [&](const auto& task) { return task.due <= now; });
  std::transform(tasks.begin(), later, std::back_inserter(due),
                 [](auto& task) { return std::move(task.handler); });
  tasks.erase(tasks.begin(), later);
  return due;
}

void ChangeLoop::runTasks(const std::vector<Handler>& due) {
  for (const auto& task : due) {
    task();
    closeCancelled();
  }
}

void ChangeLoop::deliverLastCalls() {
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
    closeCancelled();
  }
}

void ChangeLoop::closeCancelled() {
  for (;;) {
    std::shared_ptr<Handler> retired;  // goes after the guard
    const std::lock_guard guard(lock);
    if (cancelledByHandlers.empty()) return;
    const auto source = std::move(cancelledByHandlers.back());
    cancelledByHandlers.pop_back();
    retired = closeSource(source);
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
