// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "ports/linux/LinuxFileSystem.h"
#include "ports/linux/LinuxMainQueue.h"
#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"

namespace sprig::test {

/// Real files, with the homes and containers that a test gives.
class TestFileSystem : public ports::LinuxFileSystem {
 public:
  TestFileSystem(const platform::FileURL& root, std::shared_ptr<ports::SystemCalls> systemCalls)
      : LinuxFileSystem(std::move(systemCalls)),
        home(root.appendingPath("home")),
        ownHome(root.appendingPath("own")),
        state(root.appendingPath("state")) {}

  platform::FileURL home;
  platform::FileURL ownHome;
  platform::FileURL state;
  std::optional<platform::FileURL> container;
  /// The errors of the next attempts to write a new file, in order; further ones are carried out.
  std::deque<platform::Error> refusals;
  /// The ways in which new files were to be written, in order.
  std::string attempts;
  /// Which entries every folder has, where a test would have to make too many.
  std::function<bool(std::string_view)> imaginedEntries;

  /// What may not be written to.
  std::set<platform::FileURL> readOnly;
  bool isWritable(const platform::FileURL& location) const override {
    return !readOnly.contains(location) && LinuxFileSystem::isWritable(location);
  }

  /// Called before each read of a whole file.
  std::function<void()> beforeReading;

  tl::expected<std::string, platform::Error> contentsOfFile(
      const platform::FileURL& location) const override {
    if (beforeReading) beforeReading();
    return LinuxFileSystem::contentsOfFile(location);
  }
  std::unique_ptr<platform::Folder> openFolder(const platform::FileURL& location) const override;
  tl::expected<std::unique_ptr<platform::UnpublishedFile>, platform::Error> prepareFile(
      std::string_view data, const platform::FileURL& folder) override;
  std::optional<platform::Error> createFile(std::string_view data,
                                            const platform::FileURL& location) override;
  platform::FileURL homeDirectory() const override { return home; }
  platform::FileURL homeDirectoryForCurrentUser() const override { return ownHome; }
  platform::FileURL stateDirectory() const override { return state; }
  std::optional<platform::FileURL> containerURL(std::string_view identifier) const override {
    return identifier == "sprig" ? container : std::nullopt;
  }

 private:
  std::optional<platform::Error> nextRefusal();
};

class TestUserDatabase : public platform::UserDatabase {
 public:
  std::optional<platform::FileURL> home;
  std::string fullName = "Jane Doe";
  std::optional<platform::FileURL> homeDirectory() const override { return home; }
  std::string fullUserName() const override { return fullName; }
};

class TestProcessInfo : public platform::ProcessInfo {
 public:
  std::map<std::string, std::string, std::less<>> variables{{"USER", "jdoe"}};
  platform::OperatingSystemVersion version{14, 0, 0};
  std::optional<std::string> environment(std::string_view variable) const override {
    const auto entry = variables.find(variable);
    if (entry == variables.end()) return std::nullopt;
    return entry->second;
  }
  platform::OperatingSystemVersion operatingSystemVersion() const override { return version; }
};

/// Stands still until a test turns it, or goes on by a step each time it is read.
class TestClock : public platform::Clock {
 public:
  platform::Instant instant = at(2026, 11, 16, 9, 5, 2);
  static platform::Instant at(int year, unsigned month, unsigned day, int hour, int minute, int second);
  std::chrono::milliseconds step{0};
  /// Of its calendar, east of UTC.
  std::chrono::hours zone{0};
  platform::Instant now() const override;
  platform::DateComponents components(platform::Instant instant) const override;

 private:
  mutable std::atomic<int> looks = 0;
};

class RecordingSystemLog : public platform::SystemLog {
 public:
  void log(std::string_view line) override {
    const std::lock_guard guard(lock);
    recorded.emplace_back(line);
  }
  std::vector<std::string> lines() const {
    const std::lock_guard guard(lock);
    return recorded;
  }
  /// Hands over what was written since the last call.
  std::vector<std::string> takeLines() {
    const std::lock_guard guard(lock);
    return std::exchange(recorded, {});
  }

 private:
  mutable std::mutex lock;
  std::vector<std::string> recorded;  // guarded by lock
};

/// Sources whose events are made by a test, which calls the handler that was resumed last for a location.
class ManualFileChanges : public platform::FileChangeSources {
 public:
  std::map<platform::FileURL, platform::FileChangeSource::Handler> handlers;
  std::unique_ptr<platform::FileChangeSource> makeFileSystemObjectSource(
      const platform::FileURL& location, platform::FileEvents events) override;
  /// What is due later never comes.
  void asyncAfter(std::chrono::milliseconds delay, std::function<void()> task) override {
    if (delay.count() == 0) task();
  }
};

class TestVolumes : public platform::Volumes {
 public:
  std::optional<std::vector<platform::FileURL>> volumes = std::vector<platform::FileURL>{};
  std::optional<std::vector<platform::FileURL>> mountedVolumeURLs() const override { return volumes; }
};

class RecordingWorkspace : public platform::Workspace {
 public:
  std::vector<platform::FileURL> revealed;
  std::vector<std::string> opened;
  void activateFileViewerSelecting(const std::vector<platform::FileURL>& files) override {
    revealed.insert(revealed.end(), files.begin(), files.end());
  }
  bool open(const std::string& url) override {
    opened.push_back(url);
    return false;
  }
};

class RecordingCreations : public platform::Creations {
 public:
  std::vector<platform::FileURL> files;
  void created(const platform::FileURL& file) override { files.push_back(file); }
};

/// Has every symbol but the missing ones.
class TestSymbolImages : public platform::SymbolImages {
 public:
  std::set<std::string> missing;
  bool refusesConfiguration = false;
  std::optional<platform::Image> systemSymbol(const std::string& symbolName,
                                              const std::string& accessibilityDescription) const override {
    if (missing.contains(symbolName)) return std::nullopt;
    return platform::Image{symbolName, accessibilityDescription, std::nullopt,
                           platform::ImageRendering::asGiven};
  }
  std::optional<platform::Image> configured(
      const platform::Image& image, const platform::SymbolConfiguration& configuration) const override {
    if (refusesConfiguration) return std::nullopt;
    auto result = image;
    result.configuration = configuration;
    return result;
  }
};

/// Plays the user in modal sessions.
class ScriptedApplication : public platform::Application {
 public:
  explicit ScriptedApplication(ports::LinuxMainQueue& mainQueue) : queue(mainQueue) {}

  /// What the user does with an alert; by default nothing, as where nothing can be shown.
  std::function<void(platform::Alert&)> user = [](platform::Alert&) {};
  /// The alerts shown, as they were when the user saw them.
  std::vector<platform::Alert> shown;
  /// How the program was activated, in order.
  std::vector<std::string> activations;
  std::optional<platform::ActivationPolicy> policy;
  /// What the last session ended with; -1 when nothing ended it.
  int lastCode = 0;

  void setActivationPolicy(platform::ActivationPolicy newPolicy) override { policy = newPolicy; }
  void activate() override { activations.emplace_back("activate"); }
  void activateIgnoringOtherApps() override { activations.emplace_back("activateIgnoringOtherApps"); }
  int runModal(platform::Alert& alert) override;
  void stopModal(int code) override;

  /// What a port does when the user types a name and presses a button, presses it, or closes the window.
  static void type(platform::Alert& alert, const std::string& text);
  void press(platform::Alert& alert, const std::string& keyEquivalent);
  static void close(platform::Alert& alert) { alert.window->delegate->windowWillClose(); }

 private:
  /// A modal session: its code once it has ended.
  using Session = std::optional<int>;

  ports::LinuxMainQueue& queue;
  std::vector<Session*> sessions;  // the innermost last
};

class TestFinderSyncController : public platform::FIFinderSyncController {
 public:
  std::set<platform::FileURL> served;
  std::optional<platform::FileURL> targeted;
  std::optional<std::vector<platform::FileURL>> selected;
  void setDirectoryURLs(const std::set<platform::FileURL>& folders) override { served = folders; }
  std::optional<platform::FileURL> targetedURL() const override { return targeted; }
  std::optional<std::vector<platform::FileURL>> selectedItemURLs() const override { return selected; }
};

/// The tests' own port, in force while it lives: everything is recorded or scripted, but for files, which are
/// real and stand in a folder that goes with it.
class TestPlatform {
 public:
  TestPlatform();

  TemporaryFolder folder;
  /// The system calls behind `files`; fail where a test says so.
  std::shared_ptr<FaultyCalls> calls = std::make_shared<FaultyCalls>();
  TestFileSystem files{folder.url(), calls};
  TestUserDatabase users;
  TestProcessInfo process;
  TestClock clock;
  RecordingSystemLog systemLog;
  ports::LinuxMainQueue mainQueue;
  ManualFileChanges fileChanges;
  TestVolumes volumes;
  RecordingWorkspace workspace;
  RecordingCreations creations;
  TestSymbolImages images;
  ScriptedApplication application{mainQueue};
  TestFinderSyncController controller;

  /// A folder of that name in the temporary one, made if need be.
  platform::FileURL makeFolder(const std::string& name);
  platform::FileURL makeFile(const std::string& name, const std::string& content = "");
  /// Writes the configuration document in force from the next load on.
  platform::FileURL writeConfig(const std::string& document);
  /// The messages logged since the last call, without the prefix.
  std::vector<std::string> takeLog();

 private:
  platform::Platform services{files,   users,     process,   clock,  systemLog,   mainQueue, fileChanges,
                              volumes, workspace, creations, images, application, controller};
  platform::PlatformScope scope{services};
};

}  // namespace sprig::test
