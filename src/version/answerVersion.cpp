// SPDX-License-Identifier: GPL-3.0-or-later

#include "version/answerVersion.h"

#include <cstdio>
#include <string_view>

namespace sprig {

bool answerVersion(const char* program, int argumentCount, char** arguments) {
  if (argumentCount < 2 || std::string_view(arguments[1]) != "--version") return false;
  std::printf("%s %s\n", program, SPRIG_VERSION);
  return true;
}

}  // namespace sprig
