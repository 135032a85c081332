// SPDX-License-Identifier: GPL-3.0-or-later

// Building a menu, against copying the titles that it shows.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "Extension.h"
#include "Workload.h"

namespace sprig::bench {

namespace {

void buildMenu(benchmark::State& state) {
  Extension extension(configuration(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(extension.menu());
}
BENCHMARK(buildMenu)->Name("menu/ours")->Arg(11)->Arg(100)->Arg(1000);
BENCHMARK(buildMenu)->Name("curve/menu")->RangeMultiplier(10)->Range(10, 100'000)->UseRealTime();

void copyTitles(benchmark::State& state) {
  const auto config = configuration(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::vector<std::string> titles;
    titles.reserve(config.templates.size());
    for (const auto& item : config.templates) titles.push_back(item.name);
    benchmark::DoNotOptimize(titles);
  }
}
BENCHMARK(copyTitles)->Name("menu/floor")->Arg(11)->Arg(100)->Arg(1000);

}  // namespace

}  // namespace sprig::bench

BENCHMARK_MAIN();
