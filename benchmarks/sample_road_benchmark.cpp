// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What one sample costs on its way from the helper's bytes to a line of the log, beside what
// libplist alone costs for the same bytes. The budget is the ratio of the two, at most 1.5, so both
// are measured in one run; --benchmark_enable_random_interleaving=true keeps a busy machine's
// moods out of the ratio.
//
// Each sample arrives in a buffer of its own, and allocating 55 KB makes the C library tidy up its
// heap, at libplist's expense: hence the second of the two baselines.

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "adapters/libplist/libplist_reader.h"
#include "benchmarks/example_document.h"
#include "benchmarks/sample_road.h"
#include "sampling/sample_parser.h"

namespace pallimo {
namespace {

const base::Bytes& document() {
  static const base::Bytes bytes = [] {
    const char* folder = std::getenv("PALLIMO_SAMPLES_DIR");
    std::ifstream file(std::string(folder != nullptr ? folder : PALLIMO_SAMPLES_DIR) +
                           "/m3-max-cpu-power-zero.plist",
                       std::ios::binary);
    return base::Bytes(std::istreambuf_iterator<char>(file), {});
  }();
  return bytes;
}

void parseAndFree(const base::Bytes& bytes) {
  plist_t root = nullptr;
  plist_from_xml(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::uint32_t>(bytes.size()), &root);
  benchmark::DoNotOptimize(root);
  plist_free(root);
}

void libplistAlone(benchmark::State& state) {
  for (auto _ : state) parseAndFree(document());
}
BENCHMARK(libplistAlone)->Unit(benchmark::kMicrosecond);

void libplistOnABufferOfItsOwn(benchmark::State& state) {
  for (auto _ : state) parseAndFree(base::Bytes(document()));
}
BENCHMARK(libplistOnABufferOfItsOwn)->Unit(benchmark::kMicrosecond);

void readerToValue(benchmark::State& state) {
  const adapters::libplist::LibplistReader reader;
  for (auto _ : state) benchmark::DoNotOptimize(reader.read(document()));
}
BENCHMARK(readerToValue)->Unit(benchmark::kMicrosecond);

void figuresOfASample(benchmark::State& state) {
  const auto sample = sampling::parseSample(adapters::libplist::LibplistReader(), document());
  for (auto _ : state) {
    benchmark::DoNotOptimize(sampling::powerValues(sample));
    benchmark::DoNotOptimize(sampling::clusterFrequencies(sample));
    benchmark::DoNotOptimize(sampling::gpuFrequency(sample));
    benchmark::DoNotOptimize(sampling::clusterCPUs(sample));
  }
}
BENCHMARK(figuresOfASample)->Unit(benchmark::kMicrosecond);

void bytesToLogLine(benchmark::State& state) {
  benchmarks::SampleRoad road(benchmarks::largestMachine());
  for (auto _ : state) benchmark::DoNotOptimize(road.take(document()));
}
BENCHMARK(bytesToLogLine)->Unit(benchmark::kMicrosecond);

/// Whether figures from all over the document reach the line: package power and frequencies.
bool isRoadWhole() {
  benchmarks::SampleRoad road(benchmarks::largestMachine());
  const std::string& line = road.take(document());
  return line.find(", 1.727, ") != std::string::npos &&
         line.find(", 1391, 3646, 750, ") != std::string::npos;
}

}  // namespace
}  // namespace pallimo

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (pallimo::document().empty()) {
    std::cerr << "no captured document: set PALLIMO_SAMPLES_DIR to the folder of captured "
                 "documents\n";
    return 2;
  }
  if (!pallimo::isRoadWhole()) {
    std::cerr << "the captured document's figures do not reach the log line\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
