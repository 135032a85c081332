#include "ports/linux/MountedVolumes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sprig::test {
namespace {

using ports::MountEntry;

struct Row {
  MountEntry mount;
  bool isVisible;
};

TEST(VisibleVolumes, AreTheDisksAndSharesOutsideTheSystem) {
  const ports::VolumeRules rules = {
      {"tmpfs", "proc", "overlay", "autofs", "nfs4", "cifs", "fuse", "zfs", "9p"}, "jdoe", {"/mnt/hidden"}};
  const std::vector<Row> rows = {
      {{"/dev/sdb1", "/media/jdoe/USB STICK", "vfat", "rw"}, true},
      {{"/dev/sdb1", "/run/media/jdoe/Disk", "ext4", "rw"}, true},
      {{"/dev/sdb1", "/run/media/other/Disk", "ext4", "rw"}, false},
      {{"/dev/sdb1", "/run/media/jdoe", "ext4", "rw"}, false},
      {{"/dev/sda3", "/home", "btrfs", "rw"}, true},
      {{"/dev/sda4", "/mnt/data\xff", "ext4", "rw"}, true},
      {{"/dev/sda5", "/srv", "xfs", "rw"}, true},
      {{"/dev/sda6", "/variable", "xfs", "rw"}, true},
      {{"tank/data", "/tank", "zfs", "rw"}, true},
      {{"server:/export", "/mnt/nfs", "nfs4", "rw"}, true},
      {{"//server/share", "/mnt/smb", "cifs", "rw"}, true},
      {{"jdoe@host:", "/home/jdoe/remote", "fuse.sshfs", "rw"}, true},
      {{"/dev/sdc1", "/mnt/ntfs", "fuseblk", "rw"}, true},
      {{"/dev/sda2", "/", "ext4", "rw"}, false},
      {{"/dev/sda1", "/boot/efi", "vfat", "rw"}, false},
      {{"/dev/sda7", "/var", "ext4", "rw"}, false},
      {{"/dev/sda8", "/var/lib/docker", "ext4", "rw"}, false},
      {{"/dev/loop3", "/snap/core/1", "squashfs", "ro"}, false},
      {{"/dev/loop4", "/mnt/image", "iso9660", "ro"}, false},
      {{"tmpfs", "/mnt/ram", "tmpfs", "rw"}, false},
      {{"overlay", "/mnt/merged", "overlay", "rw"}, false},
      {{"/etc/auto", "/net", "autofs", "rw"}, false},
      {{"gvfsd-fuse", "/run/user/1000/gvfs", "fuse.gvfsd-fuse", "rw"}, false},
      {{"App", "/home/jdoe/.mount_App", "fuse.App", "ro"}, false},
      {{"/dev/sdd1", "/mnt/.snapshots/1", "ext4", "rw"}, false},
      {{"/dev/sdd1", "/mnt/secret", "ext4", "rw,x-gvfs-hide,nofail"}, false},
      {{"/dev/sdd1", "/mnt/not-secret", "ext4", "rw,x-gvfs-hidden"}, true},
      {{"/dev/sdd1", "/mnt/hidden", "ext4", "rw"}, false},
  };
  for (const auto& row : rows) {
    const auto visible = ports::visibleVolumes({row.mount}, rules);
    EXPECT_EQ(!visible.empty(), row.isVisible) << row.mount.folder;
    if (!visible.empty()) {
      EXPECT_EQ(visible.front().path(), row.mount.folder);
    }
  }
}

TEST(VisibleVolumes, AreListedOnceInTheOrderOfTheTable) {
  const auto visible = ports::visibleVolumes({{"/dev/sdb2", "/mnt/b", "ext4", ""},
                                              {"auto", "/mnt/a", "autofs", ""},
                                              {"server:/a", "/mnt/a", "nfs", ""},
                                              {"/dev/sdb3", "/mnt/b", "ext4", ""}},
                                             {{"autofs", "nfs"}, "", {}});
  EXPECT_EQ(visible, (std::vector{platform::FileURL("/mnt/b"), platform::FileURL("/mnt/a")}));
}

TEST(MountedVolumes, AreReadFromTheRunningSystem) {
  const auto volumes = ports::MountedVolumes().mountedVolumeURLs();
  ASSERT_TRUE(volumes);
  for (const auto& volume : *volumes) EXPECT_NE(volume.path(), "/");
}

}  // namespace
}  // namespace sprig::test
