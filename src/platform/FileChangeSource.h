// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "platform/FileURL.h"

namespace sprig::platform {

/// What a source reports. Of a folder, `write` is: an entry was created, removed or renamed; a rename within
/// it is one event, and so is the making of a file, reported when its writer is done. `mounted` is of any
/// location: file systems were mounted or unmounted, wherever.
enum class FileEvents : unsigned { write = 1, deleted = 2, renamed = 4, mounted = 8 };

constexpr FileEvents operator|(FileEvents left, FileEvents right) {
  return static_cast<FileEvents>(static_cast<unsigned>(left) | static_cast<unsigned>(right));
}

constexpr bool contains(FileEvents set, FileEvents event) {
  return (static_cast<unsigned>(set) & static_cast<unsigned>(event)) != 0;
}

/// Tells that something happened to one file or folder: the very one found at the location when the source
/// was made, wherever it is moved and whatever takes its place.
///
/// Threads:   made, resumed and cancelled on any thread, its own handler included. The handler runs on a
///            background thread, one call at a time.
/// Ownership: the source owns its descriptors. They are closed once, after cancellation; destroying a source
///            cancels it.
/// Events:    collected from the moment the source is made, delivered once it is resumed. Each is one call
///            of the handler; none is delayed or coalesced by this layer. Events that happened before a
///            cancellation and were not delivered yet are delivered together in one last call, so that
///            whoever replaces a source by a new one misses nothing in between.
class FileChangeSource {
 public:
  using Handler = std::function<void()>;

  virtual ~FileChangeSource() = default;

  /// Starts delivery to `handler`. Requires: called once. The handler may destroy the source, even before
  /// this call has returned.
  virtual void resume(Handler handler) = 0;

  /// Ends delivery; further calls do nothing. Does not wait: called on another thread than the handler's, the
  /// handler may be running, and may run that last time, after this has returned. So handlers refer weakly to
  /// what they can outlive.
  virtual void cancel() = 0;
};

/// Makes the sources; the handlers' background thread belongs to it.
class FileChangeSources {
 public:
  virtual ~FileChangeSources() = default;

  /// A source for what is at `location` (links followed) now; null when it can't be watched. There is no
  /// half-alive source.
  virtual std::unique_ptr<FileChangeSource> makeFileSystemObjectSource(const FileURL& location,
                                                                       FileEvents events) = 0;

  /// Has `task` called once on the handlers' thread, after the calls for all that has happened until now.
  /// Never waits.
  void async(std::function<void()> task) { asyncAfter({}, std::move(task)); }

  /// The same, but not before `delay` has passed; not at all when this is destroyed before that.
  virtual void asyncAfter(std::chrono::milliseconds delay, std::function<void()> task) = 0;
};

}  // namespace sprig::platform
