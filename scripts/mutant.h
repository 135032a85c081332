// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

/// Whether the change of this number is in force, which the environment says. On request the first call of each is
/// noted, so that it is known which ones a suite reaches.
inline bool mutant_(int number) {
  static const char *const chosen = std::getenv("SPRIG_MUTANT"), *const reached = std::getenv("SPRIG_MUTANTS_REACHED");
  static const int inForce = chosen ? std::atoi(chosen) : 0;
  static bool seen[100000];  // a line twice does no harm
  if (reached && !seen[number]) {
    seen[number] = true;
    const int file = open(reached, O_WRONLY | O_APPEND | O_CLOEXEC);
    dprintf(file, "%d\n", number);
    close(file);
  }
  return number == inForce;
}
