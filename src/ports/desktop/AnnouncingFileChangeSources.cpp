#include "ports/desktop/AnnouncingFileChangeSources.h"

#include <utility>

namespace sprig::desktop {

using platform::FileChangeSource;

namespace {

class AnnouncingSource final : public FileChangeSource {
 public:
  AnnouncingSource(std::unique_ptr<FileChangeSource> fileChanges, std::function<void()> handled)
      : source(std::move(fileChanges)), announce(std::move(handled)) {}

  void resume(Handler handler) override {
    // The handler may destroy this source; the closure lives until it has returned.
    source->resume([handler = std::move(handler), announce = announce] {
      handler();
      announce();
    });
  }
  void cancel() override { source->cancel(); }

 private:
  const std::unique_ptr<FileChangeSource> source;
  const std::function<void()> announce;
};

}  // namespace

std::unique_ptr<FileChangeSource> AnnouncingFileChangeSources::makeFileSystemObjectSource(
    const platform::FileURL& location, platform::FileEvents events) {
  auto source = sources.makeFileSystemObjectSource(location, events);
  if (!source) return nullptr;
  return std::make_unique<AnnouncingSource>(std::move(source), announce);
}

}  // namespace sprig::desktop
