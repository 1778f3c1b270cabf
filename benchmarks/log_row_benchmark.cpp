// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What a row of the log costs: taken from the modules, kept, and made a line of the file.

#include <benchmark/benchmark.h>

#include <iostream>
#include <string>

#include "benchmarks/example_log.h"
#include "benchmarks/example_row.h"
#include "benchmarks/grown_machine.h"
#include "benchmarks/sample_road.h"
#include "logging/log_file_data.h"
#include "logging/sample_rows.h"

namespace pallimo::benchmarks {
namespace {

/// Rows of modules that have taken a sample.
class TakenRows {
 public:
  TakenRows() {
    road_.take(documentOf(machine_));
    rows_.addReceiver([this](const logging::LogRow& row) { newest_ = row; });
  }
  const logging::LogRow& take() {
    rows_.appendRow();
    return newest_;
  }

 private:
  const MachineDescription machine_ = adapters::simulated::macStudioM2Ultra();
  SampleRoad road_{machine_};
  logging::SampleRows rows_{
      road_.clock(), {road_.power(), road_.frequency(), road_.temperature(), road_.utilization()}};
  logging::LogRow newest_;
};

void takeARow(benchmark::State& state) {
  TakenRows rows;
  for (auto _ : state) benchmark::DoNotOptimize(rows.take());
}
BENCHMARK(takeARow);

void appendARow(benchmark::State& state) {
  ExampleLog log;
  log.model->setLogEnabled(true);
  int second = 0;
  for (auto _ : state) log.model->appendRow(exampleRow(++second % kRowsOfADay));
}
BENCHMARK(appendARow)->Iterations(kRowsOfADay);

/// As a log writes it in the end, when the time of day is known.
void makeALine(benchmark::State& state) {
  const logging::LogRow first = exampleRow(0);
  const base::TimeOfDay timeOfDay = base::timeOfDay(base::localTime(first.time));
  std::string line;
  int second = 0;
  for (auto _ : state) {
    line.clear();
    const logging::LogRow row = exampleRow(++second % kRowsOfADay);
    logging::appendCsvLine(line, logging::formatRow(row, first.time, timeOfDay));
    benchmark::DoNotOptimize(line.data());
  }
}
BENCHMARK(makeALine);

/// As a headless run prints it at once, with the time of day of the zone.
void makeALineOfItsOwn(benchmark::State& state) {
  const logging::LogRow first = exampleRow(0);
  int second = 0;
  for (auto _ : state) {
    const logging::LogRow row = exampleRow(++second % kRowsOfADay);
    benchmark::DoNotOptimize(logging::csvLine(logging::formatRow(row, first.time)));
  }
}
BENCHMARK(makeALineOfItsOwn);

bool isRowWhole() {
  TakenRows rows;
  const logging::LogRow& row = rows.take();
  return row.pkgPower > 0 && row.cpuPCoreFrequency > 0 && row.cpuMaxTmp > 0 &&
         row.cpuUtilization > 0;
}

}  // namespace
}  // namespace pallimo::benchmarks

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (!pallimo::benchmarks::isRowWhole()) {
    std::cerr << "the modules' figures do not reach the row\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
