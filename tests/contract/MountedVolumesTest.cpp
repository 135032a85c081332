// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/MountedVolumes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sprig::test {
namespace {

using ports::MountEntry;

TEST(VisibleVolumes, AreTheDisksAndSharesOutsideTheSystem) {
  const ports::VolumeRules rules = {
      {"tmpfs", "overlay", "autofs", "nfs4", "fuse", "zfs"}, "jdoe", {"/mnt/hidden"}};
  const std::vector<MountEntry> visible = {
      {"/dev/sdb1", "/media/jdoe/USB STICK", "vfat", "rw"},
      {"/dev/sdb1", "/run/media/jdoe/Disk", "ext4", "rw"},
      {"/dev/sda4", "/mnt/data\xff", "ext4", "rw"},
      {"/dev/sda6", "/variable", "xfs", "rw"},
      {"tank/data", "/tank", "zfs", "rw"},
      {"server:/export", "/mnt/nfs", "nfs4", "rw"},
      {"jdoe@host:", "/home/jdoe/remote", "fuse.sshfs", "rw"},
      {"/dev/sdd1", "/mnt/not-secret", "ext4", "rw,x-gvfs-hide-not"},
  };
  const std::vector<MountEntry> hidden = {
      {"/dev/sdb1", "/run/media/other/Disk", "ext4", "rw"},
      {"/dev/sdb1", "/run/media/jdoe", "ext4", "rw"},
      {"/dev/sda2", "/", "ext4", "rw"},
      {"/dev/sda7", "/var", "ext4", "rw"},
      {"/dev/sda8", "/var/lib/docker", "ext4", "rw"},
      {"/dev/loop4", "/mnt/image", "iso9660", "ro"},
      {"tmpfs", "/mnt/ram", "tmpfs", "rw"},
      {"/etc/auto", "/net", "autofs", "rw"},
      {"App", "/home/jdoe/.mount_App", "fuse.App", "ro"},
      {"/dev/sdd1", "/mnt/secret", "ext4", "rw,x-gvfs-hide,nofail"},
      {"/dev/sdd1", "/mnt/hidden", "ext4", "rw"},
  };
  for (const auto& mount : visible) {
    EXPECT_EQ(ports::visibleVolumes({mount}, rules), std::vector{platform::FileURL(mount.folder)});
  }
  for (const auto& mount : hidden) EXPECT_TRUE(ports::visibleVolumes({mount}, rules).empty()) << mount.folder;
}

TEST(VisibleVolumes, AreListedOnceInTheOrderOfTheTable) {
  const auto visible = ports::visibleVolumes({{"/dev/sdb2", "/mnt/b", "ext4", ""},
                                              {"auto", "/mnt/a", "autofs", ""},
                                              {"server:/a", "/mnt/a", "nfs", ""},
                                              {"/dev/sdb3", "/mnt/b", "ext4", ""}},
                                             {{"autofs", "nfs"}, "", {}});
  EXPECT_EQ(visible, (std::vector{platform::FileURL("/mnt/b"), platform::FileURL("/mnt/a")}));
}

}  // namespace
}  // namespace sprig::test
