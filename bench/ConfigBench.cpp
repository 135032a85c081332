// SPDX-License-Identifier: GPL-3.0-or-later

// Reading the configuration, against the JSON library reading the same document and doing nothing with it;
// and taking in a change of the file, against that reading.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <boost/json.hpp>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>

#include "Extension.h"
#include "Timer.h"
#include "Workload.h"
#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"

namespace sprig::bench {

namespace {

constexpr std::int64_t reloadedTemplates = 1000;

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
BENCHMARK(decode)->Name("curve/decode")->RangeMultiplier(10)->Range(10, 100'000)->UseRealTime();
BENCHMARK(decode)->Name("reload/floor")->Arg(reloadedTemplates)->UseRealTime();

void parse(benchmark::State& state) {
  const auto& text = documentFor(state);
  for (auto _ : state) benchmark::DoNotOptimize(boost::json::parse(text));
}
BENCHMARK(parse)->Name("decode/floor")->Arg(11)->Arg(1000)->Arg(10000);

/// Saves a configuration, each time with another version, and waits for the menu that is made of it.
class Reload {
 public:
  explicit Reload(std::int64_t templates) : config(firstConfiguration(templates)) {}

  /// One small write into the file, which is one event; seconds from there.
  double afterWrite() {
    const auto version = std::to_string(++config.version);
    const Timer timer;
    const auto written = ::pwrite(file.get(), version.data(), version.size(), versionPlace);
    if (written != static_cast<ssize_t>(version.size()))
      throw std::runtime_error("the file can't be written");
    waitForMenu();
    return timer.seconds();
  }

  /// A new file renamed over it, which is an event of the file and one of the folder.
  double afterRename() {
    ++config.version;
    const auto temporary = extension.folder().appendingPath("new.json");
    test::writeFile(temporary, encodeConfig(config));
    const Timer timer;
    std::filesystem::rename(temporary.path(), extension.configFile().path());
    waitForMenu();
    return timer.seconds();
  }

 private:
  static AppConfigItem firstConfiguration(std::int64_t templates) {
    auto result = configuration(static_cast<std::size_t>(templates));
    result.version = 1'000'000'000;  // those after it are as long
    return result;
  }

  void waitForMenu() {
    while (ConfigManager::shared().getConfig()->version != config.version) std::this_thread::yield();
    benchmark::DoNotOptimize(extension.menu());
  }

  AppConfigItem config;
  const off_t versionPlace = static_cast<off_t>(encodeConfig(config).find("1000000000"));
  Extension extension{config};
  const ports::Descriptor file{::open(extension.configFile().path().c_str(), O_WRONLY | O_CLOEXEC)};
};

void reload(benchmark::State& state, double (Reload::*save)()) {
  Reload document(state.range(0));
  for (auto _ : state) state.SetIterationTime((document.*save)());
}
BENCHMARK_CAPTURE(reload, written, &Reload::afterWrite)
    ->Name("reload/ours")
    ->Arg(reloadedTemplates)
    ->UseManualTime();
BENCHMARK_CAPTURE(reload, renamed, &Reload::afterRename)
    ->Name("reload/renamed")
    ->Arg(reloadedTemplates)
    ->UseManualTime();
BENCHMARK_CAPTURE(reload, curve, &Reload::afterWrite)
    ->Name("curve/reload")
    ->RangeMultiplier(10)
    ->Range(10, 100'000)
    ->UseManualTime();

}  // namespace

}  // namespace sprig::bench

BENCHMARK_MAIN();
