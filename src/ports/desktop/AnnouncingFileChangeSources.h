#pragma once

#include <functional>
#include <memory>

#include "platform/FileChangeSource.h"

namespace sprig::desktop {

/// File-change sources that tell, too, when a handler has run: the product has then taken the change in.
///
/// Threads:   as the sources behind it; `handled` is called on their background thread.
/// Ownership: the sources behind it are the caller's and outlive this. Those made here may outlive it.
class AnnouncingFileChangeSources final : public platform::FileChangeSources {
 public:
  AnnouncingFileChangeSources(platform::FileChangeSources& fileChanges, std::function<void()> handled)
      : sources(fileChanges), announce(std::move(handled)) {}

  std::unique_ptr<platform::FileChangeSource> makeFileSystemObjectSource(
      const platform::FileURL& location, platform::FileEvents events) override;

 private:
  platform::FileChangeSources& sources;
  const std::function<void()> announce;
};

}  // namespace sprig::desktop
