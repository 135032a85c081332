// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/ProgramFile.h"

#include <sys/stat.h>

namespace sprig::desktop {

bool isProgramFileGone() {
  // The link leads to the file that was started, whatever has its name now.
  struct stat program = {};
  return ::stat("/proc/self/exe", &program) == 0 && program.st_nlink == 0;
}

}  // namespace sprig::desktop
