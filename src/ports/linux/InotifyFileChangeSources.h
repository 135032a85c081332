// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "platform/FileChangeSource.h"

namespace sprig::ports {

class ChangeLoop;

/// File-change sources on inotify, delivered by one background thread called "sprig-changes".
///
/// Cancelling does not wait: a handler that another thread cancels may be running still, and runs once more
/// when events were pending; so handlers refer weakly to what they may outlive. A source may be cancelled and
/// destroyed by its own handler, whose closure lives until it returns. A source that takes over from one
/// cancelled in the same handler misses nothing: the cancelled one collects events until the new one does.
///
/// What is reported: a file was written, lost its name (removed, or something else was renamed over it), or
/// was moved; not changes of mode and times. An entry of a folder came or went; a new file has come when its
/// writer has closed it, or has put something into it. The kernel merges an event with an identical one
/// before it that has not been read yet. One inotify instance serves all, since a user has few of them; where
/// none can be had, each source that is made tries again.
///
/// Threads:   destroyed on any thread but its own, and not while it is used. Last calls that are due are made
///            before the destructor returns.
/// Ownership: sources may outlive this; they report nothing any more.
/// Failure:   throws `std::system_error` when the thread or its descriptors can't be had.
class InotifyFileChangeSources final : public platform::FileChangeSources {
 public:
  InotifyFileChangeSources();
  ~InotifyFileChangeSources() override;
  InotifyFileChangeSources(const InotifyFileChangeSources&) = delete;
  InotifyFileChangeSources& operator=(const InotifyFileChangeSources&) = delete;

  std::unique_ptr<platform::FileChangeSource> makeFileSystemObjectSource(
      const platform::FileURL& location, platform::FileEvents events) override;
  void asyncAfter(std::chrono::milliseconds delay, std::function<void()> task) override;

 private:
  std::shared_ptr<ChangeLoop> loop;
};

}  // namespace sprig::ports
