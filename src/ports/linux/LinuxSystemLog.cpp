// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/LinuxSystemLog.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <string_view>
#include <utility>

#include "ports/linux/retrying.h"

namespace sprig::ports {

namespace {

/// The head of a syslog datagram: priority, local time in English, program and process.
std::string head(const std::string& name) {
  static constexpr std::array<std::string_view, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  ::localtime_r(&now, &local);
  std::array<char, 16> time{};
  std::strftime(time.data(), time.size(), " %e %H:%M:%S ", &local);
  std::string result = "<" + std::to_string(LOG_USER | LOG_NOTICE) + ">";
  result.append(months[static_cast<std::size_t>(local.tm_mon)]).append(time.data());
  return result.append(name).append("[" + std::to_string(::getpid()) + "]: ");
}

void writeToStandardError(std::string_view line) {
  const std::string text = std::string(line) + "\n";
  // One write, so that lines of several threads don't mix; a lost line is lost.
  [[maybe_unused]] const auto written =
      retrying([&] { return ::write(STDERR_FILENO, text.data(), text.size()); });
}

}  // namespace

LinuxSystemLog::LinuxSystemLog(std::string identifier, SystemLogFallback fallback, std::string socketPath)
    : name(std::move(identifier)),
      fallbackWay(fallback),
      path(std::move(socketPath)),
      socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {}

void LinuxSystemLog::log(std::string_view line) {
  if (!sendToDaemon(line) && fallbackWay == SystemLogFallback::standardError) writeToStandardError(line);
}

bool LinuxSystemLog::sendToDaemon(std::string_view line) const {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  if (!socket.isOpen() || path.size() >= sizeof address.sun_path) return false;
  std::memcpy(&address.sun_path, path.data(), path.size());
  const std::string datagram = head(name).append(line);
  const auto sent = retrying([&] {
    return ::sendto(socket.get(), datagram.data(), datagram.size(), MSG_NOSIGNAL,
                    reinterpret_cast<const sockaddr*>(&address), sizeof address);
  });
  return sent != -1;
}

}  // namespace sprig::ports
