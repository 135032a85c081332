#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>

namespace sprig::ports {

/// The system calls by which whole files are read and written, each as its manual page says (-1 and `errno`
/// on failure). Virtual so that a test can make any of them fail.
///
/// Threads: any.
class SystemCalls {
 public:
  virtual ~SystemCalls() = default;

  virtual int openAt(int folder, const char* path, int flags, mode_t mode);
  virtual ssize_t read(int descriptor, void* buffer, std::size_t size);
  virtual ssize_t write(int descriptor, const void* data, std::size_t size);
  virtual int status(int descriptor, struct stat& result);
  virtual int flush(int descriptor);
  virtual int close(int descriptor);
  virtual int renameAt(int folder, const char* from, const char* to);
  virtual int unlinkAt(int folder, const char* name);
};

}  // namespace sprig::ports
