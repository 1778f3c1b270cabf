// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// How the cost of a row of the log grows with their number, up to eleven days of one a second:
// appending another one, the memory that it takes, and writing it into the file in the end. Nothing
// limits the number of rows.
//
// The environment names the zone: otherwise each row asks the system whether it is still the same
// one, which costs more than all the rest and never grows; log_row_benchmark has that too. And the
// file stays in the system's cache, so that the disk's moods do not count; log_write_benchmark
// waits for the disk.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>

#include "allocations/counted_memory.h"
#include "benchmarks/count_per.h"
#include "benchmarks/example_log.h"
#include "benchmarks/example_row.h"
#include "logging/log_file_text.h"
#include "logging/log_rows.h"

namespace pallimo::benchmarks {
namespace {

/// Enough for several of the chunks that rows lie in.
constexpr int kAppended = 10 * logging::LogRows::kRowsPerChunk;

int askedOf(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

/// One row more behind so many.
void appendBehind(benchmark::State& state) {
  ExampleLog log;
  log.collect(askedOf(state));
  int second = askedOf(state);
  for (auto _ : state) log.model->appendRow(exampleRow(++second));
}

logging::LogRows rowsOf(int count) {
  logging::LogRows rows;
  for (int second = 0; second < count; ++second) rows.append(exampleRow(second), {});
  return rows;
}

void collectRows(benchmark::State& state) {
  std::int64_t bytes = 0;
  for (auto _ : state) {
    const std::int64_t before = allocations::liveBytes();
    const logging::LogRows rows = rowsOf(askedOf(state));
    bytes = allocations::liveBytes() - before;
  }
  state.counters["bytes_a_row"] = static_cast<double>(bytes) / askedOf(state);
  countPer(state, "row", static_cast<std::size_t>(state.range(0)));
  state.SetComplexityN(state.range(0));
}

/// As the log does when it ends.
void writeRows(benchmark::State& state) {
  TemporaryFiles files;
  files.waitsForDisk = false;
  const logging::LogRows rows = rowsOf(askedOf(state));
  const std::string path = *files.desktopFolder() + "/log.csv";
  for (auto _ : state) {
    files.writeAtomically(
        path, [&](const auto& writer) { writeLogFileText(rows, rows[0].row.time, writer); });
  }
  state.counters["MB"] = static_cast<double>(files.bytes) / 1e6;
  countPer(state, "row", static_cast<std::size_t>(state.range(0)));
  state.SetComplexityN(state.range(0));
}

void rows(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("rows");
  for (int count = 1; count <= 1'000'000; count *= 10) benchmark->Arg(count);
}

BENCHMARK(appendBehind)->Apply(rows)->Iterations(kAppended);
BENCHMARK(collectRows)->Apply(rows)->Unit(benchmark::kMicrosecond)->Complexity();
BENCHMARK(writeRows)->Apply(rows)->Unit(benchmark::kMicrosecond)->Complexity();

bool areAllWritten() {
  constexpr int kRows = 3000;
  constexpr std::size_t kShortestLine = 100;
  TemporaryFiles files;
  const logging::LogRows rows = rowsOf(kRows);
  const auto problem = files.writeAtomically(
      *files.desktopFolder() + "/log.csv",
      [&](const auto& writer) { writeLogFileText(rows, rows[0].row.time, writer); });
  return !problem && files.bytes > kShortestLine * kRows;
}

}  // namespace
}  // namespace pallimo::benchmarks

int main(int argc, char** argv) {
  setenv("TZ", "UTC", 1);
  benchmark::Initialize(&argc, argv);
  if (!pallimo::benchmarks::areAllWritten()) {
    std::cerr << "the rows do not reach the file\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
