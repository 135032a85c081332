// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "contract/Process.h"
#include "ports/linux/CreationJournal.h"
#include "ports/linux/Descriptor.h"
#include "ports/linux/LinuxFileSystem.h"
#include "ports/linux/LinuxSystemLog.h"
#include "ports/linux/LinuxUserDatabase.h"
#include "ports/linux/MountedVolumes.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {
namespace {

using Text = std::optional<std::string>;

TEST(LinuxFolders, AreTheOnesOfTheEnvironmentUnlessRelative) {
  const passwd* user = ::getpwuid(::getuid());
  ASSERT_NE(user, nullptr);
  const std::string recorded = user->pw_dir;
  const auto share = recorded + "/.local/share/sprig";
  const auto state = recorded + "/.local/state/sprig";
  struct Row {
    Text home, data, config, state;
    std::string homeFolder, ownHome, container, journal;
  };
  const Row rows[] = {
      {"/h", {}, {}, {}, "/h", "/h/.local/share/sprig", "/h/.config/sprig", "/h/.local/state/sprig"},
      {"/h", "/d/", "/c", "/s", "/h", "/d/sprig", "/c/sprig", "/s/sprig"},
      {"/h", "d", "./c", "s", "/h", "/h/.local/share/sprig", "/h/.config/sprig", "/h/.local/state/sprig"},
      {"relative", {}, {}, {}, recorded, share, recorded + "/.config/sprig", state},
      {{}, {}, {}, {}, recorded, share, recorded + "/.config/sprig", state}};
  const ports::LinuxFileSystem files;
  for (const auto& row : rows) {
    const ScopedVariable home("HOME", row.home);
    const ScopedVariable data("XDG_DATA_HOME", row.data);
    const ScopedVariable config("XDG_CONFIG_HOME", row.config);
    const ScopedVariable states("XDG_STATE_HOME", row.state);
    EXPECT_EQ(files.homeDirectory().path(), row.homeFolder);
    EXPECT_EQ(ports::LinuxUserDatabase().homeDirectory().value().path(), recorded);
    EXPECT_EQ(files.homeDirectoryForCurrentUser().path(), row.ownHome);
    EXPECT_EQ(files.containerURL("sprig").value().path(), row.container);
    EXPECT_FALSE(files.containerURL("../sprig"));
    EXPECT_EQ(files.stateDirectory().path(), row.journal);
  }
}

TEST(LinuxUserDatabase, TakesTheNameFromTheCommentAndNeedsAHome) {
  struct Row {
    const char* comment;
    const char* home;
    Text fullName;
  };
  for (const Row& row :
       {Row{"Jane Doe,Room 1,555", "/home/jdoe", "Jane Doe"}, Row{"Jane Doe", "/home/jdoe/", "Jane Doe"},
        Row{",,,", "/", "jdoe"}, Row{nullptr, "/", "jdoe"}, Row{"Jane Doe", "", {}},
        Row{"Jane Doe", nullptr, {}}, Row{"Jane Doe", "home/jdoe", {}}}) {
    passwd record = {};
    record.pw_name = const_cast<char*>("jdoe");
    record.pw_gecos = const_cast<char*>(row.comment);
    record.pw_dir = const_cast<char*>(row.home);
    const auto entry = ports::LinuxUserDatabase::entry(record);
    EXPECT_EQ(entry ? Text(entry->fullName) : Text(), row.fullName);
  }
}

TEST(VisibleVolumes, AreTheDisksAndSharesOutsideTheSystem) {
  const ports::VolumeRules rules = {
      {"tmpfs", "overlay", "autofs", "nfs4", "fuse", "zfs"}, "jdoe", {"/mnt/hidden"}};
  const std::vector<ports::MountEntry> visible = {
      {"/dev/sdb1", "/media/jdoe/USB STICK", "vfat", "rw"},
      {"/dev/sdb1", "/run/media/jdoe/Disk", "ext4", "rw"},
      {"/dev/sda4", "/mnt/data\xff", "ext4", "rw"},
      {"/dev/sda6", "/variable", "xfs", "rw"},
      {"tank/data", "/tank", "zfs", "rw"},
      {"server:/export", "/mnt/nfs", "nfs4", "rw"},
      {"jdoe@host:", "/home/jdoe/remote", "fuse.sshfs", "rw"},
      {"/dev/sdd1", "/mnt/not-secret", "ext4", "rw,x-gvfs-hide-not"},
  };
  const std::vector<ports::MountEntry> hidden = {
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

/// A log daemon's socket in a temporary folder.
class Daemon {
 public:
  Daemon() {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path().c_str(), sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  }
  std::string path() const { return (folder / "log").path(); }
  std::string receive() const {
    std::array<char, 4096> buffer;
    const auto size = ::recv(socket.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    return size < 0 ? "(none)" : std::string(buffer.data(), static_cast<std::size_t>(size));
  }

 private:
  TemporaryFolder folder;
  ports::Descriptor socket{::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
};

/// What is written to standard error while `work` runs.
std::string standardErrorOf(const std::function<void()>& work) {
  const TemporaryFolder folder;
  const auto file = folder / "stderr";
  const ports::Descriptor kept(::dup(STDERR_FILENO));
  EXPECT_NE(std::freopen(file.path().c_str(), "w", stderr), nullptr);
  work();
  ::dup2(kept.get(), STDERR_FILENO);
  return readFile(file);
}

TEST(LinuxSystemLog, PassesLinesUnchangedToTheDaemonOrTheFallback) {
  const std::string pid = std::to_string(::getpid());
  for (const std::string line : {"100% %s %n %@", "two\nlines", "", "caf\xc3\xa9"}) {
    const Daemon daemon;
    ports::LinuxSystemLog log("sprig-test", ports::SystemLogFallback::standardError, daemon.path());
    EXPECT_EQ(standardErrorOf([&] { log.log(line); }), "");
    const auto datagram = daemon.receive();
    EXPECT_TRUE(datagram.starts_with("<13>")) << datagram;
    EXPECT_TRUE(datagram.ends_with(" sprig-test[" + pid + "]: " + line)) << datagram;

    ports::LinuxSystemLog loud("x", ports::SystemLogFallback::standardError, "/nowhere/log");
    EXPECT_EQ(standardErrorOf([&] { loud.log(line); }), line + "\n");
    ports::LinuxSystemLog quiet("x", ports::SystemLogFallback::none, "/nowhere/log");
    EXPECT_EQ(standardErrorOf([&] { quiet.log(line); }), "");
  }
}

TEST(LinuxSystemLog, NeverWaitsForADaemonThatDoesNotRead) {
  const Daemon daemon;
  ports::LinuxSystemLog log("sprig-test", ports::SystemLogFallback::standardError, daemon.path());
  const auto descriptors = openDescriptors();
  const auto overflow = standardErrorOf([&] {
    for (int line = 0; line < 3000; ++line) log.log(std::to_string(line));
  });
  EXPECT_TRUE(overflow.ends_with("\n2999\n"));
  EXPECT_EQ(openDescriptors(), descriptors);
}

}  // namespace
}  // namespace sprig::test
