// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/NewFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "ports/linux/Descriptor.h"
#include "ports/terminal/StandardStreams.h"

namespace sprig::terminal {

NewFileResult createNewFile(const platform::FileURL& location, std::string_view data) {
  const char* path = location.path().c_str();
  const ports::Descriptor file(::open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file.isOpen()) return errno == EEXIST ? NewFileResult::existsAlready : NewFileResult::failed;
  if (writeFully(file.get(), data) && ::fsync(file.get()) == 0) return NewFileResult::created;
  const int reason = errno;
  ::unlink(path);
  errno = reason;
  return NewFileResult::failed;
}

}  // namespace sprig::terminal
