// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/TestPlatform.h"

#include <chrono>
#include <ctime>

#include "diag/logSprig.h"

namespace sprig::test {

using platform::Alert;
using platform::FileURL;

namespace {

class ImaginedFolder : public platform::Folder {
 public:
  explicit ImaginedFolder(std::function<bool(std::string_view)> predicate) : exists(std::move(predicate)) {}
  bool hasEntry(std::string_view name) const override { return exists(name); }

 private:
  std::function<bool(std::string_view)> exists;
};

class ManualSource : public platform::FileChangeSource {
 public:
  explicit ManualSource(Handler& called) : handler(called) {}
  void resume(Handler newHandler) override { handler = std::move(newHandler); }
  void cancel() override {}

 private:
  Handler& handler;
};

}  // namespace

std::unique_ptr<platform::Folder> TestFileSystem::openFolder(const FileURL& location) const {
  if (imaginedEntries) return std::make_unique<ImaginedFolder>(imaginedEntries);
  return LinuxFileSystem::openFolder(location);
}

tl::expected<std::unique_ptr<platform::UnpublishedFile>, platform::Error> TestFileSystem::prepareFile(
    std::string_view data, const FileURL& location) {
  attempts += "prepared ";
  if (auto refusal = nextRefusal()) return tl::unexpected(*refusal);
  return LinuxFileSystem::prepareFile(data, location);
}

std::optional<platform::Error> TestFileSystem::createFile(std::string_view data, const FileURL& location) {
  attempts += "direct ";
  if (auto refusal = nextRefusal()) return refusal;
  return LinuxFileSystem::createFile(data, location);
}

std::optional<platform::Error> TestFileSystem::nextRefusal() {
  if (refusals.empty()) return std::nullopt;
  auto refusal = refusals.front();
  refusals.pop_front();
  return refusal;
}

platform::Instant TestClock::at(int year, unsigned month, unsigned day, int hour, int minute, int second) {
  using namespace std::chrono;
  return sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day)) + hours(hour) +
         minutes(minute) + seconds(second);
}

platform::Instant TestClock::now() const { return instant + step * ++looks; }

platform::DateComponents TestClock::components(platform::Instant shown) const {
  const std::time_t time = std::chrono::floor<std::chrono::seconds>(shown + zone).time_since_epoch().count();
  std::tm utc = {};
  ::gmtime_r(&time, &utc);
  return {utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec};
}

std::unique_ptr<platform::FileChangeSource> ManualFileChanges::makeFileSystemObjectSource(
    const FileURL& location, platform::FileEvents) {
  if (!platform::current().files.fileExists(location)) return nullptr;
  return std::make_unique<ManualSource>(handlers[location]);
}

int ScriptedApplication::runModal(Alert& alert) {
  Session session;
  sessions.push_back(&session);
  queue.runPending();
  if (!session) {
    shown.push_back(alert);
    user(alert);
    queue.runPending();
  }
  sessions.pop_back();
  return lastCode = session.value_or(-1);
}

void ScriptedApplication::stopModal(int code) {
  if (!sessions.empty() && !*sessions.back()) *sessions.back() = code;
}

void ScriptedApplication::type(Alert& alert, const std::string& text) {
  auto& field = *alert.window->initialFirstResponder;
  field.stringValue = text;
  field.target->performAction(field.action);
}

void ScriptedApplication::press(Alert& alert, const std::string& keyEquivalent) {
  for (const auto& button : alert.buttons) {
    if (button.keyEquivalent != keyEquivalent) continue;
    if (button.target == nullptr) return stopModal(button.tag);
    return button.target->performAction(button.action);
  }
}

TestPlatform::TestPlatform() {
  users.home = makeFolder("account");
  files.container = folder.url().appendingPath("container");
}

FileURL TestPlatform::makeFolder(const std::string& name) {
  auto location = folder.url().appendingPath(name);
  static_cast<void>(files.createDirectory(location));
  return location;
}

FileURL TestPlatform::makeFile(const std::string& name, const std::string& content) {
  auto location = folder.url().appendingPath(name);
  static_cast<void>(files.createDirectory(location.deletingLastPathComponent()));
  writeFile(location, content);
  return location;
}

FileURL TestPlatform::writeConfig(const std::string& document) {
  return makeFile("container/config.json", document);
}

std::vector<std::string> TestPlatform::takeLog() {
  auto lines = systemLog.takeLines();
  for (auto& line : lines) {
    if (line.starts_with(systemLogPrefix)) line.erase(0, systemLogPrefix.size());
  }
  return lines;
}

}  // namespace sprig::test
