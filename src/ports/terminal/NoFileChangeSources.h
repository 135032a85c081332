// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "platform/FileChangeSource.h"

namespace sprig::terminal {

/// File-change sources to which nothing ever happens: for a command that is over before a change could
/// matter. Watching takes a thread, and of the kernel milliseconds for each folder of which it remembers many
/// entries.
///
/// Threads:   any.
/// Ownership: sources are the caller's and may outlive this.
/// Failure:   none.
class NoFileChangeSources final : public platform::FileChangeSources {
 public:
  std::unique_ptr<platform::FileChangeSource> makeFileSystemObjectSource(const platform::FileURL&,
                                                                         platform::FileEvents) override {
    return std::make_unique<Source>();
  }
  void asyncAfter(std::chrono::milliseconds, std::function<void()>) override {}

 private:
  class Source final : public platform::FileChangeSource {
   public:
    void resume(Handler) override {}
    void cancel() override {}
  };
};

}  // namespace sprig::terminal
