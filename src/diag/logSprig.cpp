// SPDX-License-Identifier: GPL-3.0-or-later

#include "diag/logSprig.h"

#include <chrono>
#include <cstdio>
#include <string>

#include "platform/Platform.h"
#include "text/Text.h"

namespace sprig {

namespace {

std::string timestamp(platform::Instant instant) {
  namespace chrono = std::chrono;
  const auto day = chrono::floor<chrono::days>(instant);
  const chrono::year_month_day date(day);
  const chrono::hh_mm_ss time(chrono::floor<chrono::seconds>(instant - day));
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d +0000", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return text;
}

}  // namespace

void logSprig(std::string_view message) {
  auto& platform = platform::current();
  platform.systemLog.log(std::string(systemLogPrefix).append(message));

  const auto home = platform.users.homeDirectory();
  if (!home) return;
  const auto file = home->appendingPath(".kestrel/sprig/extension.log");
  const auto line = "[" + timestamp(platform.clock.now()) + "] " + std::string(message) + "\n";
  const bool isUnicode = text::isValidUTF8(line);
  const auto append = [&] { return isUnicode ? platform.files.appendData(line, file) : std::nullopt; };
  if (isUnicode && !append()) return;
  // Only the first line of all needs the folder. A refusal shows when the file is written once more.
  static_cast<void>(platform.files.createDirectory(file.deletingLastPathComponent()));
  static_cast<void>(append());
}

}  // namespace sprig
