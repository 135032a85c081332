// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/InotifyFileChangeSources.h"

#include "ports/linux/ChangeLoop.h"

namespace sprig::ports {

namespace {

class InotifySource final : public platform::FileChangeSource {
 public:
  InotifySource(std::shared_ptr<ChangeLoop> changeLoop, std::shared_ptr<ChangeLoop::Source> loopSource)
      : loop(std::move(changeLoop)), source(std::move(loopSource)) {}
  InotifySource(const InotifySource&) = delete;
  InotifySource& operator=(const InotifySource&) = delete;
  ~InotifySource() override { loop->cancel(source); }

  void resume(Handler handler) override { loop->resume(source, std::move(handler)); }
  void cancel() override { loop->cancel(source); }

 private:
  const std::shared_ptr<ChangeLoop> loop;
  const std::shared_ptr<ChangeLoop::Source> source;
};

}  // namespace

InotifyFileChangeSources::InotifyFileChangeSources() : loop(std::make_shared<ChangeLoop>()) {}

InotifyFileChangeSources::~InotifyFileChangeSources() { loop->end(); }

std::unique_ptr<platform::FileChangeSource> InotifyFileChangeSources::makeFileSystemObjectSource(
    const platform::FileURL& location, platform::FileEvents events) {
  auto source = loop->add(location, events);
  if (!source) return nullptr;
  return std::make_unique<InotifySource>(loop, std::move(source));
}

void InotifyFileChangeSources::asyncAfter(std::chrono::milliseconds delay, std::function<void()> task) {
  loop->asyncAfter(delay, std::move(task));
}

}  // namespace sprig::ports
