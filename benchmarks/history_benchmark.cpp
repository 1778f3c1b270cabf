// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What a sample costs once its figures are read: one value more in each of the sixteen histories,
// and what the window asks of them afterwards. In histories of 350 values, the length at which they
// stay, and in the one that has no end after a day.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <iostream>

#include "adapters/simulated/machines/builtin_machine.h"
#include "benchmarks/grown_machine.h"
#include "benchmarks/sample_road.h"
#include "modules/metric_history.h"

namespace pallimo::benchmarks {
namespace {

using modules::MetricHistory;

constexpr int kHistoryLength = static_cast<int>(MetricHistory::kHistoryLength);
constexpr int kSamplesOfADay = 86'400;
constexpr std::size_t kHistories = 16;  // power 5, frequency 3, temperature 4, utilisation 4

void fill(MetricHistory& history, int values) {
  for (int i = 0; i < values; ++i) history.insert(i % 97);
}

/// The app's modules, of which that of power has taken so many samples and the others 350.
class Modules {
 public:
  explicit Modules(int samples) {
    road_.take(documentOf(machine_));
    for (int i = 1; i < samples; ++i) road_.power().ingestSample();
    for (int i = 1; i < kHistoryLength; ++i) road_.feedModules();
  }
  SampleRoad& operator*() { return road_; }
  SampleRoad* operator->() { return &road_; }

 private:
  const MachineDescription machine_ = adapters::simulated::macStudioM2Ultra();
  SampleRoad road_{machine_};
};

void insertIntoHistories(benchmark::State& state) {
  std::array<MetricHistory, kHistories> histories;
  for (MetricHistory& history : histories) fill(history, kHistoryLength);
  double value = 0;
  for (auto _ : state) {
    for (MetricHistory& history : histories) history.insert(value);
    value += 1;
  }
}
BENCHMARK(insertIntoHistories);

void copyHistories(benchmark::State& state) {
  std::array<MetricHistory, kHistories> histories;
  for (MetricHistory& history : histories) fill(history, kHistoryLength);
  for (auto _ : state) {
    for (const MetricHistory& history : histories) benchmark::DoNotOptimize(history.snapshot());
  }
}
BENCHMARK(copyHistories)->Unit(benchmark::kMicrosecond);

/// The one history that is never cut, after so many samples.
void copyEndlessHistory(benchmark::State& state) {
  MetricHistory history(MetricHistory::kUnbounded);
  fill(history, static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(history.snapshot());
}
BENCHMARK(copyEndlessHistory)
    ->ArgName("samples")
    ->Arg(kHistoryLength)
    ->Arg(kSamplesOfADay)
    ->Unit(benchmark::kMicrosecond);

/// The power module: it reads its figures, inserts them and chooses its axis.
void powerTakesASample(benchmark::State& state) {
  Modules modules(static_cast<int>(state.range(0)));
  for (auto _ : state) modules->power().ingestSample();
}
BENCHMARK(powerTakesASample)
    ->ArgName("samples")
    ->Arg(kHistoryLength)
    ->Arg(kSamplesOfADay)
    ->Unit(benchmark::kMicrosecond);

/// All four, which also read the 24 processors' ticks and 40 temperatures.
void modulesTakeASample(benchmark::State& state) {
  Modules modules(kHistoryLength);
  for (auto _ : state) modules->feedModules();
}
BENCHMARK(modulesTakeASample)->Unit(benchmark::kMicrosecond);

/// A sample with its publication, after which the window takes a snapshot of each model.
void modulesTakeAndShowASample(benchmark::State& state) {
  Modules modules(static_cast<int>(state.range(0)));
  SampleRoad& road = *modules;
  const auto seen = road.power().observe([&road] {
    benchmark::DoNotOptimize(road.power().snapshot());
    benchmark::DoNotOptimize(road.frequency().snapshot());
    benchmark::DoNotOptimize(road.temperature().snapshot());
    benchmark::DoNotOptimize(road.utilization().snapshot());
  });
  for (auto _ : state) {
    road.feedModules();
    road.publish();
  }
}
BENCHMARK(modulesTakeAndShowASample)
    ->ArgName("samples")
    ->Arg(kHistoryLength)
    ->Arg(kSamplesOfADay)
    ->Unit(benchmark::kMicrosecond);

bool areHistoriesFull() {
  Modules modules(kSamplesOfADay);
  const auto power = modules->power().snapshot();
  return power->historicPKG.length == MetricHistory::kHistoryLength && power->PKGEnergy > 0 &&
         power->historicANE.length > kSamplesOfADay &&
         modules->utilization().snapshot()->historic.length == MetricHistory::kHistoryLength;
}

}  // namespace
}  // namespace pallimo::benchmarks

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (!pallimo::benchmarks::areHistoriesFull()) {
    std::cerr << "the samples do not reach the histories\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
