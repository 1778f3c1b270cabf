// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// What the start costs before there is a window, without Qt: the simulated machine, which a Mac has
// no need of, and the models, of which the sensors' keys and the machine's title are the parts that
// ask the system for something.

#include <benchmark/benchmark.h>

#include <iostream>
#include <memory>

#include "app/models/general_model.h"
#include "benchmarks/simulated_platform.h"
#include "modules/module_model_main_title.h"
#include "modules/module_model_temperature.h"

namespace pallimo::benchmarks {
namespace {

void makeMachine(benchmark::State& state) {
  const fakes::ManualClock clock;
  for (auto _ : state) {
    const auto machine = loadMachine();
    benchmark::DoNotOptimize(machine.systemControls());
    benchmark::DoNotOptimize(machine.sensors(clock));
  }
}
BENCHMARK(makeMachine)->Unit(benchmark::kMicrosecond);

/// All of them, joined.
void makeModels(benchmark::State& state) {
  SimulatedPlatform simulated;
  const app::Platform platform = simulated.platform();
  for (auto _ : state) {
    const app::GeneralModel general(platform);
    benchmark::DoNotOptimize(&general);
    simulated.mainQueue().run();
  }
}
BENCHMARK(makeModels)->Unit(benchmark::kMicrosecond);

void findSensors(benchmark::State& state) {
  SimulatedPlatform simulated;
  const app::Platform platform = simulated.platform();
  for (auto _ : state) {
    benchmark::DoNotOptimize(modules::ModuleModelTemperature::create(
        platform.notifications,
        {platform.systemControls, platform.smcDevice, platform.hidSensors}));
  }
}
BENCHMARK(findSensors)->Unit(benchmark::kMicrosecond);

void readTitle(benchmark::State& state) {
  SimulatedPlatform simulated;
  const app::Platform platform = simulated.platform();
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        modules::ModuleModelMainTitle::create({platform.systemControls, platform.accelerators,
                                               platform.programLauncher, platform.propertyLists}));
  }
}
BENCHMARK(readTitle)->Unit(benchmark::kMicrosecond);

bool areSensorsFound() {
  SimulatedPlatform simulated;
  const app::GeneralModel general(simulated.platform());
  const auto* smc = general.modelTemperature()->sensorTmp().smcTmp();
  constexpr std::size_t kNamedByTheTables = 40;
  return smc != nullptr && smc->availableTemperatureKeys().size() == kNamedByTheTables;
}

}  // namespace
}  // namespace pallimo::benchmarks

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (!pallimo::benchmarks::areSensorsFound()) {
    std::cerr << "the start does not find the sensors\n";
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
