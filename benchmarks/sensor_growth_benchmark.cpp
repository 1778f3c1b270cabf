// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// How the cost of the SMC's temperatures grows with the number of its keys: finding them, once at
// the start, and reading them, once a sample. "calls" are those of the kernel: on a Mac each of
// them goes there and back, here an answer comes out of a table.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>

#include "adapters/simulated/machines/builtin_machine.h"
#include "adapters/simulated/recordings/simulated_system_controls.h"
#include "adapters/simulated/sensors/current_step.h"
#include "adapters/simulated/sensors/simulated_smc_device.h"
#include "benchmarks/count_per.h"
#include "benchmarks/grown_smc.h"
#include "fakes/manual_clock.h"
#include "sensors/sgm1_smc_sensor_temperature.h"

namespace pallimo::benchmarks {
namespace {

using sensors::SGM1SMCSensorTemperature;

/// Nothing ever changes.
class StillSteps final : public adapters::simulated::StepSource {
 public:
  std::shared_ptr<const adapters::simulated::RecordingStep> stepAt(
      const adapters::simulated::SimulatedMoment&) override {
    return std::make_shared<const adapters::simulated::RecordingStep>();
  }
};

class CountingDevice final : public ports::SmcDevice {
 public:
  explicit CountingDevice(ports::SmcDevice& inner) : inner_(inner) {}
  std::optional<std::uint32_t> open() override { return inner_.open(); }
  std::int32_t callStructMethod(std::uint32_t connection, std::uint32_t selector,
                                const ports::SMCRequestRecord& input,
                                ports::SMCRequestRecord& output) override {
    ++calls;
    return inner_.callStructMethod(connection, selector, input, output);
  }
  void close(std::uint32_t connection) override { inner_.close(connection); }

  std::size_t calls = 0;

 private:
  ports::SmcDevice& inner_;
};

/// A Mac with an SMC of so many keys.
struct Machine {
  explicit Machine(std::size_t keys) : device(smcOfKeys(keys), now) {}

  fakes::ManualClock clock;
  adapters::simulated::CurrentStep now{std::make_unique<StillSteps>(), clock, 0};
  adapters::simulated::SimulatedSmcDevice device;
  adapters::simulated::SimulatedSystemControls controls{
      adapters::simulated::systemControlsOf(adapters::simulated::macStudioM2Ultra())};
};

struct Readings {
  sensors::TemperatureReadings cpu;
  sensors::TemperatureReadings gpu;
};

Readings readAll(SGM1SMCSensorTemperature& temperatures) {
  return {temperatures.readCPUTemperatures(), temperatures.readGPUTemperatures()};
}

std::size_t keysOf(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

void findKeys(benchmark::State& state) {
  Machine machine(keysOf(state));
  for (auto _ : state) {
    benchmark::DoNotOptimize(SGM1SMCSensorTemperature(machine.device, machine.controls));
  }
  CountingDevice counting(machine.device);
  const SGM1SMCSensorTemperature counted(counting, machine.controls);
  state.counters["calls"] = static_cast<double>(counting.calls);
  state.counters["found"] = static_cast<double>(counted.availableTemperatureKeys().size());
  countPer(state, "key", keysOf(state));
  state.SetComplexityN(state.range(0));
}

void readASample(benchmark::State& state) {
  Machine machine(keysOf(state));
  CountingDevice counting(machine.device);
  SGM1SMCSensorTemperature temperatures(counting, machine.controls);
  counting.calls = 0;
  for (auto _ : state) benchmark::DoNotOptimize(readAll(temperatures));
  const auto samples = static_cast<double>(state.iterations());
  state.counters["calls"] = static_cast<double>(counting.calls) / samples;
  const std::size_t found = temperatures.availableTemperatureKeys().size();
  state.counters["found"] = static_cast<double>(found);
  countPer(state, "found", found);
}

void keys(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("keys")->Unit(benchmark::kMicrosecond);
  for (const int count : {100, 200, 500, 1000, 2000, 5000}) benchmark->Arg(count);
}

BENCHMARK(findKeys)->Apply(keys)->Complexity();
BENCHMARK(readASample)->Apply(keys);

bool areAllRead() {
  Machine machine(5000);
  SGM1SMCSensorTemperature temperatures(machine.device, machine.controls);
  const Readings readings = readAll(temperatures);
  return readings.cpu.size() == sensors::kCPUTemperatureKeyTable.size() &&
         readings.gpu.size() == sensors::kGPUTemperatureKeyTable.size();
}

}  // namespace
}  // namespace pallimo::benchmarks

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (!pallimo::benchmarks::areAllRead()) {
    std::cerr << "not all of the known keys are read\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
