// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What it costs to write a day's log, 86,400 rows, into a file of a temporary folder while another
// thread appends to the next log; and how many bytes a row takes in memory. The budgets are 0.5 s
// and 200 bytes.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>
#include <string>
#include <thread>

#include "fakes/fake_user_notifications.h"
#include "fakes/manual_background_queue.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/recording_lines.h"
#include "fakes/scripted_random_numbers.h"
#include "logging/log_file_data.h"
#include "logging/log_file_model.h"
#include "logging/log_rows.h"

namespace {

/// What operator new has handed out and not taken back, without the allocator's own bytes.
std::atomic<std::size_t> allocated = 0;

// In front of each block, as wide as the strictest alignment asks for.
constexpr std::size_t kSizeField = alignof(std::max_align_t);

}  // namespace

// Not inlined: the compiler would take the blocks for malloc's own.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* block = std::malloc(size + kSizeField);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  allocated += size;
  return static_cast<char*>(block) + kSizeField;
}

[[gnu::noinline]] void operator delete(void* pointer) noexcept {
  if (pointer == nullptr) return;
  void* block = static_cast<char*>(pointer) - kSizeField;
  allocated -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* pointer, std::size_t) noexcept { operator delete(pointer); }

namespace pallimo {
namespace {

constexpr int kRowsOfADay = 86'400;

/// A temporary folder's files, written as the app's are: beside the target, to the disk, renamed.
class PosixFileStore final : public ports::FileStore {
 public:
  PosixFileStore() {
    if (mkdtemp(folder_.data()) == nullptr) std::abort();
  }
  ~PosixFileStore() override { rmdir(folder_.c_str()); }

  std::optional<std::string> writeAtomically(
      const std::string& path, const std::function<void(const Writer&)>& fill) override {
    const std::string beside = path + ".part";
    const int file = open(beside.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0666);
    if (file < 0) return "open";
    bool isWritten = true;
    fill([&](std::string_view piece) {
      isWritten = isWritten &&
                  write(file, piece.data(), piece.size()) == static_cast<ssize_t>(piece.size());
    });
    bytes = static_cast<std::size_t>(lseek(file, 0, SEEK_END));
    isWritten = fsync(file) == 0 && isWritten;
    close(file);
    isWritten = rename(beside.c_str(), path.c_str()) == 0 && isWritten;
    unlink(path.c_str());
    if (!isWritten) return "write";
    return std::nullopt;
  }
  std::optional<std::string> desktopFolder() const override { return folder_; }

  std::size_t bytes = 0;  ///< of the file written last

 private:
  std::string folder_ = "/tmp/pallimo-log-XXXXXX";
};

/// Figures of a busy machine, another one each second.
logging::LogRow rowAt(int second) {
  logging::LogRow row;
  row.time = std::chrono::system_clock::time_point(std::chrono::seconds(1'772'715'753 + second) +
                                                   std::chrono::microseconds(second % 977));
  const double load = (second * 37 % 1000) / 1000.0;
  row.pkgPower = 3.7 + 41.13 * load;
  row.cpuPower = 1.9 + 30.57 * load;
  row.gpuPower = 0.8 + 8.31 * load;
  row.anePower = 0.01 * load;
  row.cpuECoreFrequency = 1020.3 + 1400 * load;
  row.cpuPCoreFrequency = 1300.9 + 2700 * load;
  row.gpuFrequency = 338 + 1000 * load;
  row.cpuMinTmp = 38.2 + 20 * load;
  row.cpuAvgTmp = 44.71 + 30 * load;
  row.cpuMaxTmp = 51.3 + 45 * load;
  row.gpuAvgTmp = 41.05 + 25 * load;
  row.cpuUtilization = 100 * load / 1.3;
  row.cpuEUtilization = 100 * load / 1.1;
  row.cpuPUtilization = 100 * load / 1.7;
  row.gpuUtilization = 100 * load;
  return row;
}

struct Log {
  fakes::ManualMainQueue mainQueue;
  fakes::ManualBackgroundQueue backgroundQueue;
  fakes::MemoryUserDefaults defaults;
  PosixFileStore files;
  fakes::ManualClock clock;
  fakes::RecordingConsole console;
  fakes::FakeUserNotifications notifications;
  fakes::ScriptedRandomNumbers random;
  std::shared_ptr<logging::LogFileModel> model = logging::LogFileModel::create(
      {mainQueue, backgroundQueue, defaults, files, clock, console, notifications, random});

  void collectADay() {
    model->setLogEnabled(true);
    for (int second = 0; second < kRowsOfADay; ++second) model->appendRow(rowAt(second));
    model->setLogEnabled(false);
  }
};

/// Appends without a pause, as no sampling does.
class Appender {
 public:
  explicit Appender(logging::LogFileModel& model)
      : thread_([this, &model] {
          for (int second = 0; !isOver_; ++second) {
            model.appendRow(rowAt(second % kRowsOfADay));
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
  Log log;
  for (auto _ : state) {
    state.PauseTiming();
    log.collectADay();
    state.ResumeTiming();
    log.backgroundQueue.run();
  }
  state.counters["bytes"] = static_cast<double>(log.files.bytes);
}
BENCHMARK(writeADay)->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();

void writeADayWhileAnotherThreadAppends(benchmark::State& state) {
  Log log;
  for (auto _ : state) {
    state.PauseTiming();
    log.collectADay();
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

void appendARow(benchmark::State& state) {
  Log log;
  log.model->setLogEnabled(true);
  int second = 0;
  for (auto _ : state) log.model->appendRow(rowAt(++second % kRowsOfADay));
}
BENCHMARK(appendARow)->Iterations(kRowsOfADay);

void memoryOfADay(benchmark::State& state) {
  std::size_t bytes = 0;
  for (auto _ : state) {
    const std::size_t before = allocated;
    logging::LogRows rows;
    for (int second = 0; second < kRowsOfADay; ++second) rows.append(rowAt(second), {});
    bytes = allocated - before;
  }
  state.counters["bytesPerRow"] = static_cast<double>(bytes) / kRowsOfADay;
}
BENCHMARK(memoryOfADay)->Unit(benchmark::kMillisecond);

/// Whether a day's rows reach the file, all of them.
bool isLogWhole() {
  Log log;
  log.collectADay();
  log.backgroundQueue.run();
  constexpr std::size_t kShortestLine = 100;
  return log.console.lines().empty() && log.files.bytes > kShortestLine * kRowsOfADay;
}

}  // namespace
}  // namespace pallimo

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (!pallimo::isLogWhole()) {
    std::cerr << "the rows do not reach the file\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
