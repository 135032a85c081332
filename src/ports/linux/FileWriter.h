// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Error.h"
#include "platform/FileURL.h"
#include "ports/linux/OpenFolder.h"
#include "ports/linux/SystemCalls.h"

namespace sprig::ports {

/// Writes straight to one file.
///
/// Threads:   one at a time.
/// Ownership: every descriptor is closed when an operation returns.
/// Failure:   an `Error`; no part of a new file is left.
class FileWriter {
 public:
  FileWriter(std::shared_ptr<SystemCalls> systemCalls, const platform::FileURL& target);

  /// Creates the target, whose name must be free. In an append-only folder, from which a part couldn't be
  /// removed, others see the file only when it is whole.
  std::optional<platform::Error> create(std::string_view data);

  /// Adds to the end of the target (links followed) in one write. A missing one is made for its owner alone.
  std::optional<platform::Error> append(std::string_view data);

 private:
  std::optional<platform::Error> createIn(const OpenFolder& folder, std::string_view data);
  platform::Error failed(std::string_view step) const;

  std::shared_ptr<SystemCalls> calls;
  const platform::FileURL& location;
};

}  // namespace sprig::ports
