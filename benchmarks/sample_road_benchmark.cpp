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
#include <memory>
#include <optional>
#include <string>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/simulated/machines.h"
#include "adapters/simulated/simulated_machine.h"
#include "adapters/simulated/simulated_sensors.h"
#include "base/notification_centre.h"
#include "fakes/fake_sampling_gate.h"
#include "fakes/manual_clock.h"
#include "fakes/manual_main_queue.h"
#include "fakes/memory_user_defaults.h"
#include "logging/log_file_data.h"
#include "logging/sample_rows.h"
#include "modules/module_model_frequency.h"
#include "modules/module_model_power.h"
#include "modules/module_model_temperature.h"
#include "modules/module_model_utilization.h"
#include "sampling/sample_parser.h"
#include "sampling/sg_power_metrics.h"

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

/// The largest of the simulated machines: 24 processors, some three hundred keys in the SMC. Its
/// sensors stand still, so that making up their figures does not count.
adapters::simulated::SimulatedMachine machine() {
  adapters::simulated::Simulation simulation;
  simulation.machine = "Mac Studio M2 Ultra";
  auto loaded = adapters::simulated::SimulatedMachine::load(simulation);
  return std::get<adapters::simulated::SimulatedMachine>(std::move(loaded));
}

/// The engine with the modules and the log that stand behind it, as the app wires them.
class Road {
 public:
  Road() {
    engine_->setGate(gate_);
    engine_->setFanout({.power = power_,
                        .utilization = utilization_,
                        .frequency = frequency_,
                        .temperature = temperature_,
                        .log = rows_});
    rows_->addReceiver([this](const logging::LogRow& row) {
      line_ = logging::csvLine(logging::formatRow(row, clock_.now()));
    });
  }

  const std::string& take(base::Bytes bytes) {
    engine_->handleResult(std::move(bytes));
    mainQueue_.run();
    return line_;
  }

 private:
  fakes::ManualClock clock_;
  fakes::ManualMainQueue mainQueue_;
  base::NotificationCentre notifications_;
  fakes::MemoryUserDefaults defaults_;
  adapters::libplist::LibplistReader reader_;
  adapters::simulated::SimulatedMachine machine_ = machine();
  std::unique_ptr<ports::SystemControls> controls_ = machine_.systemControls();
  std::unique_ptr<adapters::simulated::SimulatedSensors> sensors_ = machine_.sensors(clock_);
  std::shared_ptr<fakes::FakeSamplingGate> gate_ = std::make_shared<fakes::FakeSamplingGate>();
  std::shared_ptr<sampling::SGPowerMetrics> engine_ =
      sampling::SGPowerMetrics::create({mainQueue_, notifications_, defaults_, reader_});
  std::shared_ptr<modules::ModuleModelPower> power_ =
      modules::ModuleModelPower::create(notifications_, engine_);
  std::shared_ptr<modules::ModuleModelFrequency> frequency_ =
      modules::ModuleModelFrequency::create(notifications_, engine_);
  std::shared_ptr<modules::ModuleModelTemperature> temperature_ =
      modules::ModuleModelTemperature::create(
          notifications_, {*controls_, sensors_->smcDevice(), sensors_->hidSensors()});
  std::shared_ptr<modules::ModuleModelUtilization> utilization_ =
      modules::ModuleModelUtilization::create(
          notifications_, engine_, {sensors_->processorTicks(), sensors_->accelerators()});
  std::shared_ptr<logging::SampleRows> rows_ = std::make_shared<logging::SampleRows>(
      clock_, logging::SampleRows::Models{*power_, *frequency_, *temperature_, *utilization_});
  std::string line_;
};

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
  Road road;
  for (auto _ : state) benchmark::DoNotOptimize(road.take(document()));
}
BENCHMARK(bytesToLogLine)->Unit(benchmark::kMicrosecond);

/// Whether figures from all over the document reach the line: package power and frequencies.
bool isRoadWhole() {
  Road road;
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
