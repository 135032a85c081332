// SPDX-License-Identifier: GPL-3.0-or-later

// Filling in placeholders, against copying the text and against a templating library that does the same.

#include <benchmark/benchmark.h>

#include <cstring>
#include <kainjow/mustache.hpp>
#include <memory>
#include <string>

#include "Extension.h"
#include "Workload.h"
#include "engine/TemplateEngine.h"

namespace sprig::bench {

namespace {

constexpr std::int64_t kilobyte = 1000;
constexpr std::int64_t megabyte = 1000 * kilobyte;

platform::Instant date() { return platform::Instant(std::chrono::hours(500'000)); }

TemplateItem templateFor(const benchmark::State& state) {
  TemplateItem item;
  item.filenamePattern = "Notes";
  item.content = text(static_cast<std::size_t>(state.range(0)), static_cast<Placeholders>(state.range(1)));
  return item;
}

std::string rendered(const TemplateItem& item) {
  return TemplateEngine::render(item, std::nullopt, "Projects", "Projects", date()).content;
}

void render(benchmark::State& state) {
  const Extension extension(configuration(1));
  const auto item = templateFor(state);
  for (auto _ : state) benchmark::DoNotOptimize(rendered(item));
}

void copy(benchmark::State& state) {
  const auto content = templateFor(state).content;
  for (auto _ : state) {
    // As for a text that is handed over: into memory of its own, without clearing that first.
    const std::unique_ptr<char[]> result(new char[content.size()]);
    std::memcpy(result.get(), content.data(), content.size());
    benchmark::DoNotOptimize(result.get());
    benchmark::ClobberMemory();
  }
}

void renderByMustache(benchmark::State& state) {
  const Extension extension(configuration(1));
  const auto item = templateFor(state);
  TemplateItem dateAlone;
  dateAlone.content = "{{date}}";
  const kainjow::mustache::data values("date", rendered(dateAlone));
  const auto result = [&] { return kainjow::mustache::mustache(item.content).render(values); };
  if (result() != rendered(item)) return state.SkipWithError("the two don't do the same");
  for (auto _ : state) benchmark::DoNotOptimize(result());
}

void allTexts(benchmark::internal::Benchmark* bench) {
  bench->ArgsProduct({{kilobyte, 100 * kilobyte, 10 * megabyte}, {0, 1, 2}});
}

BENCHMARK(render)->Name("render/ours")->Apply(allTexts);
BENCHMARK(copy)->Name("render/floor")->Apply(allTexts);
BENCHMARK(renderByMustache)->Name("render/peer")->ArgsProduct({{kilobyte, 100 * kilobyte}, {0, 1, 2}});
// It takes seconds.
BENCHMARK(renderByMustache)->Name("render/peer")->Args({10 * megabyte, 1})->Iterations(1)->Repetitions(3);

}  // namespace

}  // namespace sprig::bench

BENCHMARK_MAIN();
