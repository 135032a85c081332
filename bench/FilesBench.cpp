// SPDX-License-Identifier: GPL-3.0-or-later

// What the product does with files, against the bare system calls that it can't do without.

#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "Extension.h"
#include "Timer.h"
#include "Workload.h"
#include "create/FileCreator.h"
#include "engine/ProjectDetector.h"
#include "engine/TemplateEngine.h"

namespace sprig::bench {

namespace {

using platform::FileURL;

// --- A free name
// --------------------------------------------------------------------------------------------

/// A folder in which a name and the numbered ones after it are taken.
class TakenNames {
 public:
  explicit TakenNames(std::int64_t taken) {
    for (std::int64_t number = 1; number <= taken + 1; ++number) {
      names.push_back(number == 1 ? "Report.txt" : "Report " + std::to_string(number) + ".txt");
      if (number <= taken) test::writeFile(root / names.back(), "");
    }
  }

  const FileURL& folder() const { return root.url(); }
  /// All that is taken, and the first that is free.
  const std::vector<std::string>& candidates() const { return names; }

 private:
  test::TemporaryFolder root;
  std::vector<std::string> names;
};

/// Made once: ten thousand files take a while.
const TakenNames& takenNames(const benchmark::State& state) {
  static std::map<std::int64_t, TakenNames> folders;
  return folders.try_emplace(state.range(0), state.range(0)).first->second;
}

void freeName(benchmark::State& state) {
  const Extension extension(configuration(1));
  const auto& names = takenNames(state);
  for (auto _ : state) {
    if (TemplateEngine::resolveCollision(names.folder(), "Report.txt") != names.candidates().back()) {
      return state.SkipWithError("not the free name");
    }
  }
}
BENCHMARK(freeName)->Name("free name/ours")->Arg(0)->Arg(3)->Arg(9998);

enum class Opening { once, eachTime };

void existenceTests(benchmark::State& state, Opening opening) {
  const auto& names = takenNames(state);
  const auto open = [&] {
    return ports::Descriptor(::open(names.folder().path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  };
  auto folder = open();
  for (auto _ : state) {
    if (opening == Opening::eachTime) folder = open();
    for (const auto& name : names.candidates()) {
      benchmark::DoNotOptimize(::faccessat(folder.get(), name.c_str(), F_OK, 0));
    }
  }
}
BENCHMARK_CAPTURE(existenceTests, once, Opening::once)->Name("free name/floor")->Arg(0)->Arg(3)->Arg(9998);
BENCHMARK_CAPTURE(existenceTests, open, Opening::eachTime)->Name("free name/opening")->Arg(0)->Arg(3);

// --- Creating a file
// ----------------------------------------------------------------------------------------

std::string contentFor(const benchmark::State& state) {
  return text(static_cast<std::size_t>(state.range(0)), Placeholders::none);
}

void create(benchmark::State& state) {
  const Extension extension(configuration(1));
  TemplateItem item;
  item.filenamePattern = "Report.txt";
  item.content = contentFor(state);
  for (auto _ : state) {
    const Timer timer;
    const auto file = FileCreator::createFile(item, extension.folder(), std::nullopt);
    state.SetIterationTime(timer.seconds());
    if (!file) return state.SkipWithError("no file was created");
    std::filesystem::remove(file->path());
  }
}
BENCHMARK(create)->Name("create/ours")->Arg(1'000)->Arg(20'000'000)->UseManualTime();

enum class Naming { rename, link };

bool writeBare(const FileURL& folder, const FileURL& target, const std::string& content, Naming naming) {
  auto temporary = (folder.path() + "/.XXXXXX");
  const ports::Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
  const bool isWritten =
      ::write(file.get(), content.data(), content.size()) == static_cast<ssize_t>(content.size()) &&
      ::fsync(file.get()) == 0;
  if (naming == Naming::link) {
    return isWritten && ::link(temporary.c_str(), target.path().c_str()) == 0 &&
           ::unlink(temporary.c_str()) == 0;
  }
  return isWritten &&
         ::renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, target.path().c_str(), RENAME_NOREPLACE) == 0;
}

void writeFloor(benchmark::State& state, Naming naming) {
  const test::TemporaryFolder folder;
  const auto content = contentFor(state);
  const auto target = folder / "Report.txt";
  for (auto _ : state) {
    const Timer timer;
    if (!writeBare(folder.url(), target, content, naming)) return state.SkipWithError("no file was written");
    state.SetIterationTime(timer.seconds());
    std::filesystem::remove(target.path());
  }
}
BENCHMARK_CAPTURE(writeFloor, rename, Naming::rename)
    ->Name("create/floor")
    ->Arg(1'000)
    ->Arg(20'000'000)
    ->UseManualTime();
BENCHMARK_CAPTURE(writeFloor, link, Naming::link)->Name("create/linked")->Arg(1'000)->UseManualTime();

// --- Project detection
// --------------------------------------------------------------------------------------

/// Four folders, one in the other, each with as many entries as the top of a project has.
class Project {
 public:
  Project() {
    constexpr int entries = 50;
    for (const char* name : {"a", "b", "c", "d"}) {
      levels.push_back((levels.empty() ? root.url() : levels.back()).appendingPath(name));
      std::filesystem::create_directory(levels.back().path());
      for (int entry = 0; entry < entries; ++entry) {
        test::writeFile(levels.back().appendingPath("source-file-" + std::to_string(entry) + ".cpp"), "");
      }
    }
    test::writeFile(levels.front().appendingPath("Cargo.toml"), "");
  }

  const std::vector<FileURL>& folders() const { return levels; }

 private:
  test::TemporaryFolder root;
  std::vector<FileURL> levels;
};

void detect(benchmark::State& state) {
  const Extension extension(configuration(1));
  const Project project;
  for (auto _ : state) {
    if (ProjectDetector().detectProjectTypes(project.folders().back()).size() != 1) {
      return state.SkipWithError("not the project's type");
    }
  }
}
BENCHMARK(detect)->Name("detect/ours");

void detectCached(benchmark::State& state) {
  const Extension extension(configuration(1));
  const Project project;
  ProjectDetector detector;
  for (auto _ : state) benchmark::DoNotOptimize(detector.detectProjectTypes(project.folders().back()));
}
BENCHMARK(detectCached)->Name("detect/cached");

void listFolders(benchmark::State& state) {
  const Project project;
  for (auto _ : state) {
    for (const auto& folder : project.folders()) {
      DIR* stream = ::opendir(folder.path().c_str());
      // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody else reads this stream
      while (const dirent* entry = ::readdir(stream)) benchmark::DoNotOptimize(entry);
      ::closedir(stream);
    }
  }
}
BENCHMARK(listFolders)->Name("detect/floor");

}  // namespace

}  // namespace sprig::bench

BENCHMARK_MAIN();
