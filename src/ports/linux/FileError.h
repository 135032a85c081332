// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

#include "platform/Error.h"
#include "platform/FileURL.h"

namespace sprig::ports {

/// What was to be done with a file or folder; the words of an error's description.
enum class FileOperation { read, write, append, createIn, createFolder };

/// The error of a failed system call: `step` says what was being done ("creating a temporary file"), `code`
/// is its `errno`.
platform::Error fileError(FileOperation operation, const platform::FileURL& location, std::string_view step,
                          int code);

}  // namespace sprig::ports
