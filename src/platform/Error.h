// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace sprig::platform {

/// Why an operation of the platform failed.
///
/// `description` is one full, technical paragraph for people who mend things: the operation, the path and
/// the reason. It holds the path as it is, so it may not be UTF-8. `domain` and `code` are for programs.
struct Error {
  std::string domain;
  int code = 0;
  std::string description;
};

/// The domain of failures that every platform reports alike, whatever its system calls say.
inline constexpr const char* CocoaErrorDomain = "NSCocoaErrorDomain";
/// In `CocoaErrorDomain`: the user may not write there.
inline constexpr int FileWriteNoPermissionError = 513;
/// The domain of other failed system calls; the code is the `errno` value.
inline constexpr const char* POSIXErrorDomain = "NSPOSIXErrorDomain";

}  // namespace sprig::platform
