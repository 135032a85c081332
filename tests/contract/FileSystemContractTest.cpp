#include "contract/FileSystemContract.h"

#include "ports/linux/LinuxFileSystem.h"
#include "support/FailingFileSystem.h"

namespace sprig::test {
namespace {

class LinuxFiles {
 public:
  platform::FileSystem& files() { return fileSystem; }

 private:
  ports::LinuxFileSystem fileSystem;
};

/// The decorator, as long as it lets everything through.
class ForwardedFiles {
 public:
  platform::FileSystem& files() { return decorator; }

 private:
  ports::LinuxFileSystem fileSystem;
  FailingFileSystem decorator{fileSystem};
};

using Worlds = testing::Types<LinuxFiles, ForwardedFiles>;
INSTANTIATE_TYPED_TEST_SUITE_P(Of, FileSystemContract, Worlds);

}  // namespace
}  // namespace sprig::test
