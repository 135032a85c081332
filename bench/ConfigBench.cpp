// Reading the configuration, against the JSON library reading the same document and doing nothing with it;
// and taking in a change of the file, against that reading.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <boost/json.hpp>
#include <filesystem>
#include <map>
#include <string>
#include <thread>

#include "Extension.h"
#include "Timer.h"
#include "Workload.h"
#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"

namespace sprig::bench {

namespace {

constexpr std::size_t reloadedTemplates = 1000;

const std::string& documentFor(const benchmark::State& state) {
  static std::map<std::int64_t, std::string> documents;
  auto& result = documents[state.range(0)];
  if (result.empty()) result = document(static_cast<std::size_t>(state.range(0)));
  return result;
}

void decode(benchmark::State& state) {
  const auto& text = documentFor(state);
  for (auto _ : state) benchmark::DoNotOptimize(decodeConfig(text));
}
BENCHMARK(decode)->Name("decode/ours")->Arg(11)->Arg(1000)->Arg(10000);

void parse(benchmark::State& state) {
  const auto& text = documentFor(state);
  for (auto _ : state) benchmark::DoNotOptimize(boost::json::parse(text));
}
BENCHMARK(parse)->Name("decode/floor")->Arg(11)->Arg(1000)->Arg(10000);

/// Saves a configuration, each time with another version, and waits for the menu that is made of it.
class Reload {
 public:
  Reload() { config.version = 1'000'000'000; }  // of the same length each time

  /// One write into the file, which is one event; seconds from there.
  double afterWrite() {
    const auto next = nextDocument();
    const ports::Descriptor file(::open(extension.configFile().path().c_str(), O_WRONLY | O_CLOEXEC));
    const auto written = ::pwrite(file.get(), next.data(), next.size(), 0);
    return written == static_cast<ssize_t>(next.size()) ? untilMenu() : throw std::runtime_error("pwrite");
  }

  /// A new file renamed over it, which is an event of the file and one of the folder.
  double afterRename() {
    const auto file = extension.configFile();
    const auto temporary = file.deletingLastPathComponent().appendingPath(".new.json");
    test::writeFile(temporary, nextDocument());
    std::filesystem::rename(temporary.path(), file.path());
    return untilMenu();
  }

 private:
  std::string nextDocument() {
    ++config.version;
    return encodeConfig(config);
  }

  double untilMenu() {
    const Timer timer;
    while (ConfigManager::shared().getConfig()->version != config.version) std::this_thread::yield();
    benchmark::DoNotOptimize(extension.menu());
    return timer.seconds();
  }

  AppConfigItem config = configuration(reloadedTemplates);
  Extension extension{config};
};

void reload(benchmark::State& state, double (Reload::*save)()) {
  Reload document;
  for (auto _ : state) state.SetIterationTime((document.*save)());
}
BENCHMARK_CAPTURE(reload, written, &Reload::afterWrite)->Name("reload/ours")->UseManualTime();
BENCHMARK_CAPTURE(reload, renamed, &Reload::afterRename)->Name("reload/renamed")->UseManualTime();

}  // namespace

}  // namespace sprig::bench

BENCHMARK_MAIN();
