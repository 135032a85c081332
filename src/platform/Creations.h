// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileURL.h"

namespace sprig::platform {

/// Is told of every file that the product has created and shown, so that the user can take the creation back.
///
/// Threads:   main. The caller waits for a small file to be written, and for no other program.
/// Ownership: keeps copies.
/// Failure:   none: the file is there, and that it can't be taken back by us is no reason to say otherwise.
class Creations {
 public:
  virtual ~Creations() = default;

  /// `file` was created a moment ago, under the name that it has now, and is whole.
  virtual void created(const FileURL& file) = 0;
};

}  // namespace sprig::platform
