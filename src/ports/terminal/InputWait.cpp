// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/InputWait.h"

#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace sprig::terminal {

namespace {

sigset_t setOf(std::initializer_list<int> members) {
  sigset_t set;
  ::sigemptyset(&set);
  for (const int signal : members) ::sigaddset(&set, signal);
  return set;
}

}  // namespace

InputWait::InputWait(const ports::LinuxMainQueue& queue) : mainQueue(queue) {
  const auto taken = setOf({SIGINT, SIGTSTP, SIGWINCH, SIGTERM, SIGHUP, SIGQUIT});
  signals = ports::Descriptor(::signalfd(-1, &taken, SFD_NONBLOCK | SFD_CLOEXEC));
  if (!signals.isOpen()) throw std::system_error(errno, std::generic_category(), "signalfd");
  ::pthread_sigmask(SIG_BLOCK, &taken, &before);
}

InputWait::~InputWait() {
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (deadlySignal != 0) ::raise(deadlySignal);
}

InputWait::Event InputWait::next() {
  for (;;) {
    std::array<pollfd, 3> sources = {
        {{signals.get(), POLLIN, 0}, {mainQueue.descriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
    if (::poll(sources.data(), sources.size(), -1) == -1) continue;
    if (sources[0].revents != 0) return takeSignal();
    if (sources[1].revents != 0) return Event::work;
    if (sources[2].revents != 0) return Event::input;
  }
}

InputWait::Event InputWait::takeSignal() {
  signalfd_siginfo information = {};
  if (::read(signals.get(), &information, sizeof information) != sizeof information) return Event::work;
  switch (const auto signal = static_cast<int>(information.ssi_signo)) {
    case SIGINT:
      return Event::interrupted;
    case SIGTSTP:
      return Event::stopped;
    case SIGWINCH:
      return Event::resized;
    default:
      deadlySignal = signal;
      return Event::terminated;
  }
}

void InputWait::suspend() {
  const auto stop = setOf({SIGTSTP});
  ::pthread_sigmask(SIG_UNBLOCK, &stop, nullptr);
  ::raise(SIGTSTP);
  ::pthread_sigmask(SIG_BLOCK, &stop, nullptr);
}

}  // namespace sprig::terminal
