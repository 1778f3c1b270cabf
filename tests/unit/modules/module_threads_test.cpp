// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <algorithm>
#include <atomic>
#include <thread>

#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_hid_sensors.h"
#include "fakes/fake_sample_reader.h"
#include "fakes/fake_smc_device.h"
#include "fakes/fake_system_controls.h"
#include "modules/module_model_frequency.h"
#include "modules/module_model_power.h"
#include "modules/module_model_temperature.h"
#include "modules/module_model_utilization.h"

namespace pallimo::modules {
namespace {

using base::PropertyList;

constexpr int kRounds = 2000;

/// Wholly busy processors, another number of them at each read, so that every sample measures since
/// boot. One thread.
class AlternatingTicks final : public ports::ProcessorTicks {
 public:
  std::optional<std::vector<ports::ProcessorTickCounts>> read() override {
    isWide_ = !isWide_;
    return std::vector<ports::ProcessorTickCounts>(isWide_ ? 4 : 2, {100, 0, 0, 0});
  }

 private:
  bool isWide_ = false;
};

/// One thread ingests, one clears, this one looks, from before both begin until both are done; says
/// whether every look was whole.
template <typename Model, typename IsWhole>
bool staysWhole(Model& model, IsWhole isWhole) {
  std::atomic<bool> hasLooked = false;
  std::atomic<int> running = 2;
  const auto repeat = [&](auto change) {
    return std::thread([&, change] {
      while (!hasLooked) std::this_thread::yield();
      for (int i = 0; i < kRounds; ++i) change();
      --running;
    });
  };
  std::thread delivery = repeat([&] { model.ingestSample(); });
  std::thread clearing = repeat([&] { model.clearData(); });
  bool isGood = true;
  for (; running > 0; hasLooked = true) isGood = isWhole(*model.snapshot()) && isGood;
  delivery.join();
  clearing.join();
  return isGood && isWhole(*model.snapshot());
}

TEST(ModuleThreads, ThePowerModelIsNeverSeenHalfWritten) {
  base::NotificationCentre notifications;
  const auto reader = std::make_shared<fakes::FakeSampleReader>();
  reader->setPowerValues({{"cpu_energy", PropertyList(500.0)},
                          {"dram_energy", PropertyList(500.0)},
                          {"ane_energy", PropertyList(500.0)},
                          {"gpu_energy", PropertyList(500.0)},
                          {"combined_power", PropertyList(1000.0)}});
  const auto model = ModuleModelPower::create(notifications, reader);
  const bool isWhole = staysWhole(*model, [](const ModuleModelPower::Snapshot& s) {
    const std::size_t length = s.historicANE.length;
    const std::size_t bounded = std::min<std::size_t>(length, 350);
    const double figure = length == 0 ? 0 : 1;
    return s.historicCPU.length == bounded && s.historicDRAM.length == bounded &&
           s.historicPKG.length == bounded && s.historicGPU.length == bounded &&
           s.CPUEnergy == figure && s.DRAMEnergy == figure && s.ANEEnergy == figure &&
           s.GPUEnergy == figure && s.PKGEnergy == figure;
  });
  EXPECT_TRUE(isWhole);
}

TEST(ModuleThreads, TheFrequencyModelIsNeverSeenHalfWritten) {
  base::NotificationCentre notifications;
  const auto reader = std::make_shared<fakes::FakeSampleReader>();
  reader->setClusterFrequencies({{"E-Cluster", 1000}, {"P-Cluster", 1000}});
  reader->setGPUFrequency({{"freq_hz", PropertyList(1000.0)}});
  const auto model = ModuleModelFrequency::create(notifications, reader);
  const bool isWhole = staysWhole(*model, [](const ModuleModelFrequency::Snapshot& s) {
    const std::size_t length = s.historicECore.length;
    const double figure = length == 0 ? 0 : 1;
    return s.historicPCore.length == length && s.historicGPU.length == length &&
           s.ECore == figure && s.PCore == figure && s.GPU == figure;
  });
  EXPECT_TRUE(isWhole);
}

TEST(ModuleThreads, TheUtilizationModelIsNeverSeenHalfWritten) {
  base::NotificationCentre notifications;
  AlternatingTicks ticks;
  fakes::FakeAcceleratorRegistry accelerators;
  accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("GPU", 100));
  const auto reader = std::make_shared<fakes::FakeSampleReader>();
  reader->setClusterCPUs({{"E-Cluster", {0}}, {"P-Cluster", {1}}});
  const auto model = ModuleModelUtilization::create(notifications, reader, {ticks, accelerators});
  const bool isWhole = staysWhole(*model, [](const ModuleModelUtilization::Snapshot& s) {
    const std::size_t length = s.historic.length;
    const double figure = length == 0 ? 0 : 1;
    return s.historice.length == length && s.historicp.length == length &&
           s.historicGPU.length == length && s.utilization == figure && s.eutilization == figure &&
           s.putilization == figure && s.utilizationGPU == figure;
  });
  EXPECT_TRUE(isWhole);
}

TEST(ModuleThreads, TheTemperatureModelIsNeverSeenHalfWritten) {
  base::NotificationCentre notifications;
  fakes::FakeSystemControls controls;
  controls.setText("hw.model", "MacBookAir10,1");
  fakes::FakeSmcDevice smc;
  fakes::FakeHidSensors hid;
  hid.add("Te0i", 1.0);
  hid.add("Tg0i", 1.0);
  const auto model = ModuleModelTemperature::create(notifications, {controls, smc, hid});
  const bool isWhole = staysWhole(*model, [](const ModuleModelTemperature::Snapshot& s) {
    const std::size_t length = s.historicCPUMin.length;
    const double figure = length == 0 ? 0 : 1;
    return s.historicCPUMax.length == length && s.historicCPUAvg.length == length &&
           s.historicGPUAvg.length == length && s.CPUMin == figure && s.CPUMax == figure &&
           s.CPUAvg == figure && s.GPUAvg == figure;
  });
  EXPECT_TRUE(isWhole);
}

TEST(ModuleThreads, FiguresAreReadTogether) {
  base::NotificationCentre notifications;
  const auto reader = std::make_shared<fakes::FakeSampleReader>();
  reader->setPowerValues(
      {{"cpu_energy", PropertyList(500.0)}, {"combined_power", PropertyList(1000.0)}});
  const auto model = ModuleModelPower::create(notifications, reader);
  const bool isWhole = staysWhole(*model, [&](const ModuleModelPower::Snapshot&) {
    const auto figures = model->figures();
    return figures.CPUEnergy == figures.PKGEnergy;
  });
  EXPECT_TRUE(isWhole);
}

}  // namespace
}  // namespace pallimo::modules
