// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// How the cost of a sample's road grows with its document: with the number of processors in it, and
// with the length of the lists of states, which nobody reads. A helper passes on 16 MiB at most, so
// that nothing longer arrives. Beside them two documents that no powermetrics prints: those at
// which a reader's cost might grow faster than they do.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <iostream>

#include "adapters/simulated/machines/builtin_machine.h"
#include "benchmarks/count_per.h"
#include "benchmarks/grown_machine.h"
#include "benchmarks/odd_document.h"
#include "benchmarks/sample_road.h"

namespace pallimo::benchmarks {
namespace {

constexpr std::size_t kKilobyte = 1000;

std::size_t askedOf(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

/// Every sample arrives in a buffer of its own. Before the first one the process has not yet the
/// memory that it takes.
void takeSamples(benchmark::State& state, const MachineDescription& machine) {
  const base::Bytes document = documentOf(machine);
  SampleRoad road(machine);
  road.take(document);
  for (auto _ : state) benchmark::DoNotOptimize(road.take(document));
  state.counters["kB"] = static_cast<double>(document.size()) / kKilobyte;
  countPer(state, "byte", document.size());
}

void roadOfProcessors(benchmark::State& state) {
  takeSamples(state, machineOfProcessors(askedOf(state)));
  countPer(state, "cpu", askedOf(state));
  state.SetComplexityN(state.range(0));
}

/// The part of it that comes after the parse.
void modulesOfProcessors(benchmark::State& state) {
  const MachineDescription machine = machineOfProcessors(askedOf(state));
  SampleRoad road(machine);
  road.take(documentOf(machine));
  for (auto _ : state) road.feedModules();
  countPer(state, "cpu", askedOf(state));
  state.SetComplexityN(state.range(0));
}

void roadOfKilobytes(benchmark::State& state) {
  takeSamples(state, machineOfBytes(askedOf(state) * kKilobyte));
  state.SetComplexityN(state.range(0));
}

/// Documents of no machine, against which a reader has to stand: of a size that is asked for.
void roadOfOddDocument(benchmark::State& state, const base::Bytes& document) {
  const MachineDescription machine = adapters::simulated::macStudioM2Ultra();
  SampleRoad road(machine);
  for (auto _ : state) benchmark::DoNotOptimize(road.take(document));
  countPer(state, "byte", document.size());
  state.SetComplexityN(state.range(0));
}

void roadOfDistinctKeys(benchmark::State& state) {
  roadOfOddDocument(state, documentOfKeys(askedOf(state) * kKilobyte));
}

void roadOfEntities(benchmark::State& state) {
  roadOfOddDocument(state, documentOfEntities(askedOf(state) * kKilobyte));
}

void processors(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("cpus")->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
  benchmark->Unit(benchmark::kMicrosecond)->Complexity();
}

void kilobytes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("kB");
  for (const int size : {55, 110, 275, 550, 1100, 2750, 5000, 16'000}) benchmark->Arg(size);
  benchmark->Unit(benchmark::kMicrosecond)->Complexity();
}

void oddKilobytes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("kB")->Arg(32)->Arg(64)->Arg(128)->Arg(256);
  benchmark->Unit(benchmark::kMicrosecond)->Complexity();
}

BENCHMARK(roadOfProcessors)->Apply(processors);
BENCHMARK(modulesOfProcessors)->Apply(processors);
BENCHMARK(roadOfKilobytes)->Apply(kilobytes);
BENCHMARK(roadOfDistinctKeys)->Apply(oddKilobytes)->Arg(1024)->Arg(4096);
BENCHMARK(roadOfEntities)->Apply(oddKilobytes);

/// Whether the frequencies of the largest documents reach the line. An empty field is a zero.
bool isRoadWhole(const MachineDescription& machine) {
  SampleRoad road(machine);
  road.take(documentOf(machine));
  const auto figures = road.frequency().figures();
  return figures.ECore > 0 && figures.PCore > 0 && figures.GPU > 0 &&
         road.power().figures().PKGEnergy > 0;
}

}  // namespace
}  // namespace pallimo::benchmarks

int main(int argc, char** argv) {
  using namespace pallimo::benchmarks;
  benchmark::Initialize(&argc, argv);
  if (!isRoadWhole(machineOfProcessors(1000)) || !isRoadWhole(machineOfBytes(5'000'000))) {
    std::cerr << "the documents' figures do not reach the modules\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
