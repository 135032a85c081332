#include "contract/FileChangeSourceContract.h"

#include "ports/linux/InotifyFileChangeSources.h"

namespace sprig::test {
namespace {

class Inotify {
 public:
  std::unique_ptr<platform::FileChangeSources> makeSources() {
    return std::make_unique<ports::InotifyFileChangeSources>();
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Of, FileChangeSourceContract, Inotify);

}  // namespace
}  // namespace sprig::test
