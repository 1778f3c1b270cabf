// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What it costs to write a day's log, 86,400 rows, into a file of a temporary folder while another
// thread appends to the next log; and how many bytes a row takes in memory. The budgets are 0.5 s
// and 200 bytes.

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <string_view>
#include <thread>

#include "allocations/counted_memory.h"
#include "benchmarks/example_log.h"
#include "benchmarks/example_row.h"
#include "logging/log_file_text.h"
#include "logging/log_rows.h"

namespace pallimo::benchmarks {
namespace {

void collectADay(ExampleLog& log) {
  log.collect(kRowsOfADay);
  log.model->setLogEnabled(false);
}

/// Appends without a pause, as no sampling does.
class Appender {
 public:
  explicit Appender(logging::LogFileModel& model)
      : thread_([this, &model] {
          for (int second = 0; !isOver_; ++second) {
            model.appendRow(exampleRow(second % kRowsOfADay));
            if (second % 1000 == 0) std::this_thread::yield();
          }
        }) {}
  ~Appender() {
    isOver_ = true;
    thread_.join();
  }

 private:
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

void writeADay(benchmark::State& state) {
  ExampleLog log;
  for (auto _ : state) {
    state.PauseTiming();
    collectADay(log);
    state.ResumeTiming();
    log.backgroundQueue.run();
  }
  state.counters["bytes"] = static_cast<double>(log.files.bytes);
}
BENCHMARK(writeADay)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

void writeADayWhileAnotherThreadAppends(benchmark::State& state) {
  ExampleLog log;
  for (auto _ : state) {
    state.PauseTiming();
    collectADay(log);
    log.model->setLogEnabled(true);
    {
      Appender appender(*log.model);
      state.ResumeTiming();
      log.backgroundQueue.run();
      state.PauseTiming();
    }
    log.model->setLogEnabled(false);
    log.backgroundQueue.run();
    log.mainQueue.run();
    state.ResumeTiming();
  }
}
BENCHMARK(writeADayWhileAnotherThreadAppends)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MeasureProcessCPUTime();

void memoryOfADay(benchmark::State& state) {
  std::int64_t bytes = 0;
  for (auto _ : state) {
    const std::int64_t before = allocations::liveBytes();
    logging::LogRows rows;
    for (int second = 0; second < kRowsOfADay; ++second) rows.append(exampleRow(second), {});
    bytes = allocations::liveBytes() - before;
  }
  state.counters["bytesPerRow"] = static_cast<double>(bytes) / kRowsOfADay;
}
BENCHMARK(memoryOfADay)->Unit(benchmark::kMillisecond);

/// Whether a day's rows reach the file, all of them.
bool isLogWhole() {
  ExampleLog log;
  collectADay(log);
  log.backgroundQueue.run();
  logging::LogRows rows;
  for (int second = 0; second < kRowsOfADay; ++second) rows.append(exampleRow(second), {});
  std::size_t expected = 0;
  logging::writeLogFileText(rows, rows[0].row.time,
                            [&expected](std::string_view piece) { expected += piece.size(); });
  return log.console.lines().empty() && log.files.bytes == expected;
}

}  // namespace
}  // namespace pallimo::benchmarks

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (!pallimo::benchmarks::isLogWhole()) {
    std::cerr << "the rows do not reach the file\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
