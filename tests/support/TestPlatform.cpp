#include "support/TestPlatform.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <sstream>

#include "diag/logSprig.h"

namespace sprig::test {

using platform::Alert;
using platform::FileEvents;
using platform::FileURL;

namespace {

class ImaginedFolder : public platform::Folder {
 public:
  explicit ImaginedFolder(std::function<bool(std::string_view)> predicate) : exists(std::move(predicate)) {}
  bool hasEntry(std::string_view name) const override { return exists(name); }

 private:
  std::function<bool(std::string_view)> exists;
};

}  // namespace

std::unique_ptr<platform::Folder> TestFileSystem::openFolder(const FileURL& location) const {
  if (imaginedEntries) return std::make_unique<ImaginedFolder>(imaginedEntries);
  return LinuxFileSystem::openFolder(location);
}

std::optional<platform::Error> TestFileSystem::writeData(std::string_view data, const FileURL& location,
                                                         platform::WriteOption option) {
  if (refusals.empty()) return LinuxFileSystem::writeData(data, location, option);
  auto refusal = refusals.front();
  refusals.pop_front();
  return refusal;
}

std::optional<std::string> TestProcessInfo::environment(std::string_view variable) const {
  const auto entry = variables.find(variable);
  if (entry == variables.end()) return std::nullopt;
  return entry->second;
}

platform::Instant TestClock::at(int year, unsigned month, unsigned day, int hour, int minute, int second) {
  using namespace std::chrono;
  return sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day)) + hours(hour) +
         minutes(minute) + seconds(second);
}

platform::DateComponents TestClock::components(platform::Instant shown) const {
  using namespace std::chrono;
  const auto today = floor<days>(shown);
  const year_month_day date(today);
  const hh_mm_ss time(floor<seconds>(shown - today));
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

void RecordingSystemLog::log(std::string_view line) {
  const std::lock_guard guard(lock);
  recorded.emplace_back(line);
}

std::vector<std::string> RecordingSystemLog::lines() const {
  const std::lock_guard guard(lock);
  return recorded;
}

std::vector<std::string> RecordingSystemLog::takeLines() {
  const std::lock_guard guard(lock);
  return std::exchange(recorded, {});
}

void TestMainQueue::async(Work work) {
  {
    const std::lock_guard guard(lock);
    pending.push_back(std::move(work));
  }
  changed.notify_one();
}

void TestMainQueue::sync(Work work) {
  std::mutex doneLock;
  std::condition_variable doneChanged;
  bool done = false;
  async([&] {
    work();
    const std::lock_guard guard(doneLock);
    done = true;
    doneChanged.notify_one();
  });
  std::unique_lock guard(doneLock);
  doneChanged.wait(guard, [&] { return done; });
}

void TestMainQueue::runPending() {
  for (;;) {
    Work work;
    {
      const std::lock_guard guard(lock);
      if (pending.empty()) return;
      work = std::move(pending.front());
      pending.pop_front();
    }
    work();
  }
}

bool TestMainQueue::waitAndRun() {
  {
    std::unique_lock guard(lock);
    if (!changed.wait_for(guard, std::chrono::seconds(10), [&] { return !pending.empty(); })) return false;
  }
  runPending();
  return true;
}

class ManualFileChanges::Source : public platform::FileChangeSource {
 public:
  Source(ManualFileChanges& owner, FileURL location, FileEvents wanted)
      : watched(std::move(location)), events(wanted), registry(owner) {
    registry.sources.insert(this);
  }
  ~Source() override { registry.sources.erase(this); }

  void resume(Handler newHandler) override { handler = std::move(newHandler); }
  void cancel() override { handler = nullptr; }

  const FileURL watched;
  const FileEvents events;
  Handler handler;

 private:
  ManualFileChanges& registry;
};

std::unique_ptr<platform::FileChangeSource> ManualFileChanges::makeFileSystemObjectSource(
    const FileURL& location, FileEvents events) {
  if (!platform::current().files.fileExists(location)) return nullptr;
  return std::make_unique<Source>(*this, location, events);
}

int ManualFileChanges::fire(const FileURL& location, FileEvents event) {
  // Handlers replace sources while they run.
  std::vector<platform::FileChangeSource::Handler> handlers;
  for (const auto* source : sources) {
    if (source->handler && source->watched == location && contains(source->events, event)) {
      handlers.push_back(source->handler);
    }
  }
  for (const auto& handler : handlers) handler();
  return static_cast<int>(handlers.size());
}

int ManualFileChanges::liveSources(const FileURL& location) const {
  return static_cast<int>(std::count_if(sources.begin(), sources.end(), [&](const Source* source) {
    return source->handler && source->watched == location;
  }));
}

void RecordingWorkspace::activateFileViewerSelecting(const std::vector<FileURL>& files) {
  revealed.insert(revealed.end(), files.begin(), files.end());
}

bool RecordingWorkspace::open(const std::string& url) {
  opened.push_back(url);
  return false;
}

std::optional<platform::Image> TestSymbolImages::systemSymbol(
    const std::string& symbolName, const std::string& accessibilityDescription) const {
  if (missing.contains(symbolName)) return std::nullopt;
  return platform::Image{symbolName, accessibilityDescription, std::nullopt,
                         platform::ImageRendering::asGiven};
}

std::optional<platform::Image> TestSymbolImages::configured(
    const platform::Image& image, const platform::SymbolConfiguration& configuration) const {
  if (refusesConfiguration) return std::nullopt;
  auto result = image;
  result.configuration = configuration;
  return result;
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
  return session.value_or(-1);
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
  users.home = makeFolder("home");
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
  std::ofstream(location.path(), std::ios::binary) << content;
  return location;
}

std::optional<std::string> TestPlatform::contentOf(const FileURL& file) const {
  std::ifstream stream(file.path(), std::ios::binary);
  if (!stream) return std::nullopt;
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

std::vector<std::string> TestPlatform::entriesOf(const FileURL& location) const {
  auto names = files.contentsOfDirectory(location).value_or(std::vector<std::string>{});
  std::sort(names.begin(), names.end());
  return names;
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
