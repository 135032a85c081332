// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/FileError.h"

#include <cerrno>
#include <cstring>
#include <string>

namespace sprig::ports {

namespace {

std::string_view words(FileOperation operation) {
  switch (operation) {
    case FileOperation::read:
      return "read";
    case FileOperation::write:
      return "write";
    case FileOperation::append:
      return "add to";
    case FileOperation::createIn:
      return "create a file in";
    case FileOperation::createFolder:
      return "create the folder";
  }
  return "use";
}

std::string reason(int code) {
  const char* text = strerrordesc_np(code);
  const char* name = strerrorname_np(code);
  if (text == nullptr || name == nullptr) return "error " + std::to_string(code);
  const char* explanation =
      code == EFBIG ? ", larger than this program may make files or the file system holds" : "";
  return std::string(text) + explanation + " (" + name + ")";
}

}  // namespace

platform::Error fileError(FileOperation operation, const platform::FileURL& location, std::string_view step,
                          int code) {
  std::string description = "Can't ";
  description.append(words(operation)).append(" \"").append(location.path()).append("\": ");
  description.append(step).append(" failed: ").append(reason(code));
  const bool isPermission = operation != FileOperation::read && (code == EACCES || code == EPERM);
  if (isPermission) {
    return {platform::CocoaErrorDomain, platform::FileWriteNoPermissionError, std::move(description)};
  }
  return {platform::POSIXErrorDomain, code, std::move(description)};
}

}  // namespace sprig::ports
