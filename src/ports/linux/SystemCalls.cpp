#include "ports/linux/SystemCalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace sprig::ports {

int SystemCalls::openAt(int folder, const char* path, int flags, mode_t mode) {
  return ::openat(folder, path, flags, mode);
}

ssize_t SystemCalls::read(int descriptor, void* buffer, std::size_t size) {
  return ::read(descriptor, buffer, size);
}

ssize_t SystemCalls::write(int descriptor, const void* data, std::size_t size) {
  return ::write(descriptor, data, size);
}

int SystemCalls::status(int descriptor, struct stat& result) { return ::fstat(descriptor, &result); }

int SystemCalls::flush(int descriptor) { return ::fsync(descriptor); }

int SystemCalls::close(int descriptor) { return ::close(descriptor); }

int SystemCalls::renameAt(int folder, const char* from, const char* to) {
  return ::renameat(folder, from, folder, to);
}

int SystemCalls::unlinkAt(int folder, const char* name) { return ::unlinkat(folder, name, 0); }

}  // namespace sprig::ports
