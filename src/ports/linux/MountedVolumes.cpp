// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/MountedVolumes.h"

#include <mntent.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string_view>

#include "ports/linux/LinuxUserDatabase.h"

namespace sprig::ports {

using platform::FileURL;

namespace {

constexpr const char* hideOption = "x-gvfs-hide";

/// Without a device of this machine, and still somebody's files.
constexpr std::array<std::string_view, 17> storageWithoutDevice = {
    "9p",   "afs",  "ceph",  "cifs",  "coda",   "fuse",     "glusterfs", "ncpfs", "nfs",
    "nfs4", "smb3", "smbfs", "ubifs", "vboxsf", "virtiofs", "vmhgfs",    "zfs"};

/// Mounts in and below these are the system's own.
constexpr std::array<std::string_view, 22> systemFolders = {
    "/bin",    "/boot", "/dev",  "/efi", "/etc",  "/gnu",  "/lib", "/lib32",   "/lib64", "/libx32", "/nix",
    "/ostree", "/proc", "/root", "/run", "/sbin", "/snap", "/sys", "/sysroot", "/tmp",   "/usr",    "/var"};

bool isAtOrBelow(std::string_view folder, std::string_view top) {
  return folder.starts_with(top) && (folder.size() == top.size() || folder[top.size()] == '/');
}

bool isInSystemFolder(const std::string& folder, const std::string& loginName) {
  if (!loginName.empty() && folder.starts_with("/run/media/" + loginName + "/")) return false;
  return folder == "/" || std::any_of(systemFolders.begin(), systemFolders.end(),
                                      [&](auto top) { return isAtOrBelow(folder, top); });
}

bool holdsFiles(const MountEntry& mount, const VolumeRules& rules) {
  const std::string_view type = mount.type;
  return type.starts_with("fuse.") || !rules.deviceless.contains(type) ||
         std::find(storageWithoutDevice.begin(), storageWithoutDevice.end(), type) !=
             storageWithoutDevice.end();
}

bool isHidden(const MountEntry& mount, const VolumeRules& rules) {
  mntent entry = {};
  std::string options = mount.options;
  entry.mnt_opts = options.data();
  return mount.folder.find("/.") != std::string::npos || rules.hiddenFolders.contains(mount.folder) ||
         ::hasmntopt(&entry, hideOption) != nullptr;
}

bool isVisible(const MountEntry& mount, const VolumeRules& rules) {
  return mount.folder.starts_with('/') && !mount.device.starts_with("/dev/loop") &&
         holdsFiles(mount, rules) && !isInSystemFolder(mount.folder, rules.loginName) &&
         !isHidden(mount, rules);
}

std::optional<std::vector<MountEntry>> mountTable(const char* path) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(::setmntent(path, "re"), &::endmntent);
  if (!file) return std::nullopt;
  std::vector<MountEntry> result;
  // Room for the longest path with every byte escaped; what doesn't fit is cut from the options.
  std::vector<char> line(std::size_t{32} * 1024);
  mntent entry = {};
  while (::getmntent_r(file.get(), &entry, line.data(), static_cast<int>(line.size())) != nullptr) {
    result.push_back({entry.mnt_fsname, entry.mnt_dir, entry.mnt_type, entry.mnt_opts});
  }
  return result;
}

std::set<std::string, std::less<>> devicelessFileSystems() {
  std::set<std::string, std::less<>> result;
  std::ifstream lines("/proc/filesystems");
  // A type with a device has an empty first column.
  for (std::string line; std::getline(lines, line);) {
    constexpr std::string_view mark = "nodev\t";
    if (line.starts_with(mark)) result.insert(line.substr(mark.size()));
  }
  return result;
}

/// The kernel's table leaves out options that are meant for programs only.
std::set<std::string, std::less<>> foldersHiddenByAdministrator() {
  std::set<std::string, std::less<>> result;
  for (const auto& entry : mountTable("/etc/fstab").value_or(std::vector<MountEntry>())) {
    if (isHidden(entry, {})) result.insert(entry.folder);
  }
  return result;
}

}  // namespace

std::vector<FileURL> visibleVolumes(const std::vector<MountEntry>& mounts, const VolumeRules& rules) {
  std::vector<FileURL> result;
  for (const auto& mount : mounts) {
    if (!isVisible(mount, rules)) continue;
    FileURL folder(mount.folder);
    if (std::find(result.begin(), result.end(), folder) == result.end()) result.push_back(std::move(folder));
  }
  return result;
}

std::optional<std::vector<FileURL>> MountedVolumes::mountedVolumeURLs() const {
  const auto mounts = mountTable("/proc/self/mounts");
  if (!mounts) return std::nullopt;
  const auto user = LinuxUserDatabase().entry();
  return visibleVolumes(
      *mounts, {devicelessFileSystems(), user ? user->loginName : "", foldersHiddenByAdministrator()});
}

}  // namespace sprig::ports
