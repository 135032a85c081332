// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/FinderSync.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "finder/ServedFolders.h"
#include "support/TestPlatform.h"

namespace sprig {
namespace {

using platform::FileURL;

struct Extension : testing::Test {
  test::TestPlatform platform;
  FileURL home = *platform.users.home;
  FileURL disk = platform.makeFolder("Volumes/Backup");

  std::set<FileURL> servedWith(std::optional<std::vector<FileURL>> volumes) {
    platform.volumes.volumes = std::move(volumes);
    FinderSync extension;
    return platform.controller.served;
  }
};

TEST_F(Extension, ServesTheHomeFolderAndTheVolumesButTheStartupDisk) {
  const auto link = platform.folder.url().appendingPath("Startup");
  ASSERT_EQ(symlink("/", link.path().c_str()), 0);
  const auto alias = platform.folder.url().appendingPath("Alias");
  ASSERT_EQ(symlink(disk.path().c_str(), alias.path().c_str()), 0);
  EXPECT_EQ(servedWith({{FileURL("/"), FileURL("/Volumes"), link, alias, disk, disk, home}}),
            (std::set<FileURL>{home, disk, alias}));
  EXPECT_EQ(servedFolders({home, disk, link, alias}), (std::set<FileURL>{home, disk, link, alias}))
      << "known ones are not looked at again";
  platform.volumes.volumes = {{disk}};
  EXPECT_EQ(servedFolders({home, alias}), (std::set<FileURL>{home, disk}));
  EXPECT_EQ(servedWith(std::nullopt), std::set<FileURL>{home});
  EXPECT_EQ(servedFolders({home, alias}), (std::set<FileURL>{home, alias})) << "not to be found out";
  platform.users.home.reset();
  EXPECT_EQ(servedWith(std::nullopt), std::set<FileURL>{platform.files.ownHome});
}

TEST_F(Extension, HasAnEmptyImageWhereItsSymbolDoesNotExist) {
  const FinderSync extension;
  EXPECT_EQ(extension.toolbarItemImage(), (platform::Image{"doc.badge.plus", "Sprig"}));
  platform.images.missing = {"doc.badge.plus"};
  EXPECT_EQ(extension.toolbarItemImage(), platform::Image{});
}

}  // namespace
}  // namespace sprig
