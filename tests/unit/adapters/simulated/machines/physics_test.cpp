// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "adapters/simulated/machines/machine_past.h"
#include "adapters/simulated/machines/machines.h"
#include "base/text_format.h"
#include "correlation.h"
#include "unit/adapters/simulated/sensors/sampled_machine.h"

namespace pallimo::adapters::simulated {
namespace {

using tests::laggedCorrelation;
using tests::lagOfBest;
using tests::MachineSample;
using tests::meanOf;
using tests::rankCorrelation;
using tests::SampledMachine;
using tests::Series;

std::vector<MachineSample> samplesOf(const MachineDescription& machine, std::size_t count,
                                     std::chrono::milliseconds period) {
  SampledMachine sampled(machine, 1, period);
  std::vector<MachineSample> samples(count);
  std::generate(samples.begin(), samples.end(), [&sampled] { return sampled.next(); });
  return samples;
}

/// Ten minutes of a machine, one figure at a time.
class TenMinutes {
 public:
  explicit TenMinutes(const MachineDescription& machine)
      : machine_(machine), samples_(samplesOf(machine, 600, std::chrono::seconds(1))) {}

  const MachineDescription& machine() const { return machine_; }

  const std::vector<MachineSample>& samples() const { return samples_; }

  Series demand() const { return values(&MachineSample::demand); }
  Series package() const { return values(&MachineSample::package); }
  Series gpuPower() const { return values(&MachineSample::gpu); }
  Series gpuFrequency() const { return values(&MachineSample::gpuFrequency); }
  Series gpuUtilisation() const { return values(&MachineSample::gpuBusy); }
  Series utilisation() const { return means(&MachineSample::busy); }
  Series frequency() const { return means(&MachineSample::frequencies); }
  Series cpuTemperature() const { return means(&MachineSample::cpuReadings); }
  Series gpuTemperature() const { return means(&MachineSample::gpuReadings); }

 private:
  Series values(double MachineSample::*figure) const {
    Series series;
    for (const MachineSample& sample : samples_) series.push_back(sample.*figure);
    return series;
  }
  Series means(std::vector<double> MachineSample::*figures) const {
    Series series;
    for (const MachineSample& sample : samples_) series.push_back(meanOf(sample.*figures));
    return series;
  }

  const MachineDescription& machine_;
  std::vector<MachineSample> samples_;
};

void expectPackagePowerIsTheSumOfItsParts(const std::vector<MachineSample>& samples) {
  for (const MachineSample& sample : samples) {
    const double sum = sample.cpu + sample.gpu + sample.ane;
    EXPECT_GT(sum, 0);
    EXPECT_NEAR(sample.package, sum, 0.05 * sum);
  }
}

void packagePowerIsTheSumOfItsParts(const TenMinutes& minutes) {
  expectPackagePowerIsTheSumOfItsParts(minutes.samples());
}

void temperaturesStayWithinWhatAChipEndures(const TenMinutes& minutes) {
  for (const MachineSample& sample : minutes.samples()) {
    for (const auto* readings : {&sample.cpuReadings, &sample.gpuReadings}) {
      ASSERT_FALSE(readings->empty());
      EXPECT_GE(*std::min_element(readings->begin(), readings->end()), 25);
      EXPECT_LE(*std::max_element(readings->begin(), readings->end()), 110);
    }
  }
}

/// Places of the series are seconds.
void followsWithADelay(const Series& heat, const Series& power) {
  const std::size_t lag = lagOfBest(power, heat, 20);
  EXPECT_GE(lag, 1u);
  EXPECT_GT(laggedCorrelation(power, heat, lag), 0.8);
}

void temperatureFollowsPowerWithADelay(const TenMinutes& minutes) {
  followsWithADelay(minutes.cpuTemperature(), minutes.package());
  followsWithADelay(minutes.gpuTemperature(), minutes.gpuPower());
}

void utilisationIsAShare(const TenMinutes& minutes) {
  for (const MachineSample& sample : minutes.samples()) {
    for (const double busy : sample.busy) {
      EXPECT_GE(busy, 0);
      EXPECT_LE(busy, 1);
    }
    EXPECT_GE(sample.gpuBusy, 0);
    EXPECT_LE(sample.gpuBusy, 1);
  }
}

double highest(const std::vector<double>& values) {
  return *std::max_element(values.begin(), values.end());
}

/// The sample as the log shows it: three decimals, or whole megahertz and degrees. One difference:
/// it has a column for each cluster, not for each kind of them.
std::string logTextOf(const MachineDescription& machine, const MachineSample& sample) {
  std::string text;
  const auto add = [&text](double value, int decimals) {
    base::appendFixed(text, value, decimals);
    text += ' ';
  };
  for (const double power : {sample.package, sample.cpu, sample.ane, sample.gpu}) add(power, 3);
  for (const double frequency : sample.frequencies) add(frequency, 0);
  add(sample.gpuFrequency, 0);
  add(*std::min_element(sample.cpuReadings.begin(), sample.cpuReadings.end()), 0);
  add(meanOf(sample.cpuReadings), 0);
  add(highest(sample.cpuReadings), 0);
  add(meanOf(sample.gpuReadings), 0);
  add(100 * meanOf(sample.busy), 3);
  auto next = sample.busy.begin();
  for (const ClusterDescription& cluster : machine.clusters) {
    const auto end = next + static_cast<std::ptrdiff_t>(cluster.cores);
    add(100 * meanOf({next, end}), 3);
    next = end;
  }
  add(100 * sample.gpuBusy, 3);
  return text;
}

void noTwoSamplesReadTheSameInTheLog(const TenMinutes& minutes) {
  std::set<std::string> seen;
  for (const MachineSample& sample : minutes.samples()) {
    const std::string text = logTextOf(minutes.machine(), sample);
    EXPECT_TRUE(seen.insert(text).second) << text;
  }
}

void allPanelsTellTheSameStory(const TenMinutes& minutes) {
  EXPECT_GT(rankCorrelation(minutes.demand(), minutes.package()), 0.9);
  EXPECT_GT(rankCorrelation(minutes.package(), minutes.utilisation()), 0.7);
  EXPECT_GT(rankCorrelation(minutes.package(), minutes.frequency()), 0.7);
  EXPECT_GT(rankCorrelation(minutes.utilisation(), minutes.frequency()), 0.7);
  EXPECT_GT(rankCorrelation(minutes.demand(), minutes.gpuPower()), 0.7);
  EXPECT_GT(rankCorrelation(minutes.gpuPower(), minutes.gpuUtilisation()), 0.7);
  EXPECT_GT(rankCorrelation(minutes.gpuPower(), minutes.gpuFrequency()), 0.7);
}

double spread(const Series& values) {
  const auto [low, high] = std::minmax_element(values.begin(), values.end());
  return *high - *low;
}

void quietAndBusyMomentsDifferMuch(const TenMinutes& minutes) {
  EXPECT_GT(spread(minutes.utilisation()), 0.4);
  EXPECT_GT(spread(minutes.gpuUtilisation()), 0.4);
  EXPECT_GT(spread(minutes.frequency()), 800);  // MHz
  EXPECT_GT(spread(minutes.cpuTemperature()), 10);
  const Series package = minutes.package();
  EXPECT_GT(spread(package), 4 * meanOf(package));
}

class Physics : public ::testing::TestWithParam<std::string> {
 protected:
  static const MachineDescription& machine() { return *findMachine(GetParam()); }
};

/// One test of many rules, because sampling takes far longer than any of them and every test is a
/// process of its own.
TEST_P(Physics, TenMinutesReadLikeThoseOfARealMachine) {
  const TenMinutes minutes(machine());
  ASSERT_EQ(minutes.samples().size(), 600u);
  for (const auto& rule :
       {packagePowerIsTheSumOfItsParts, temperaturesStayWithinWhatAChipEndures,
        temperatureFollowsPowerWithADelay, utilisationIsAShare, noTwoSamplesReadTheSameInTheLog,
        allPanelsTellTheSameStory, quietAndBusyMomentsDifferMuch}) {
    rule(minutes);
  }
}

TEST_P(Physics, PackagePowerIsTheSumOfItsPartsWhateverThePeriod) {
  for (const auto period : {std::chrono::milliseconds(500), std::chrono::milliseconds(100)}) {
    const auto samples = samplesOf(machine(), 60, period);
    ASSERT_EQ(samples.size(), 60u);
    expectPackagePowerIsTheSumOfItsParts(samples);
  }
}

void expectNothingIsLess(const MachineDescription& machine, const Load& more, const Load& less) {
  constexpr double kShare = 1e-12;
  constexpr double kFigure = 1e-9;
  for (std::size_t i = 0; i < more.clusters.size(); ++i) {
    const ClusterLoad& now = more.clusters[i];
    const ClusterLoad& before = less.clusters[i];
    const auto& table = machine.clusters[i].frequencies;
    EXPECT_GE(now.whole.frequency(table) + kFigure, before.whole.frequency(table));
    EXPECT_GE(now.whole.active + kShare, before.whole.active);
    EXPECT_GE(now.milliwatts + kFigure, before.milliwatts);
    ASSERT_EQ(now.cores.size(), before.cores.size());
    for (std::size_t core = 0; core < now.cores.size(); ++core) {
      EXPECT_GE(now.cores[core] + kShare, before.cores[core]);
    }
  }
  const auto& gpuTable = machine.gpu.frequencies;
  EXPECT_GE(more.gpu.frequency(gpuTable) + kFigure, less.gpu.frequency(gpuTable));
  EXPECT_GE(more.gpu.active + kShare, less.gpu.active);
  EXPECT_GE(more.cpuMilliwatts + kFigure, less.cpuMilliwatts);
  EXPECT_GE(more.gpuMilliwatts + kFigure, less.gpuMilliwatts);
  EXPECT_GE(more.aneMilliwatts + kFigure, less.aneMilliwatts);
  EXPECT_GE(more.packageMilliwatts() + kFigure, less.packageMilliwatts());
}

TEST_P(Physics, MoreDemandAtTheSameMomentLowersNothing) {
  for (const std::uint64_t seed : {1ull, 2ull, 3ull, 77ull, 4'000'000'000ull}) {
    for (double time = 0; time < 60; time += 2.9) {
      Load less = loadFor(machine(), seed, time, 0);
      for (int percent = 1; percent <= 100; ++percent) {
        Load more = loadFor(machine(), seed, time, percent / 100.0);
        expectNothingIsLess(machine(), more, less);
        less = std::move(more);
      }
    }
  }
}

TEST_P(Physics, AMachineThatIsAskedForEverythingDrawsFarMoreThanOneAtRest) {
  const Load rest = loadFor(machine(), 1, 10, 0);
  const Load full = loadFor(machine(), 1, 10, 1);
  EXPECT_LT(rest.packageMilliwatts(), 0.03 * machine().peakMilliwatts());
  EXPECT_GT(full.packageMilliwatts(), 0.4 * machine().peakMilliwatts());
  EXPECT_GT(full.cpuMilliwatts, 20 * rest.cpuMilliwatts);
  EXPECT_GT(full.gpuMilliwatts, 20 * rest.gpuMilliwatts);
}

TEST_P(Physics, NoPartEverDrawsMoreThanItsPeak) {
  constexpr double kSharedParts = 50;  // mW a cluster or GPU
  for (double time = 0; time < 120; time += 1.7) {
    const Load load = loadFor(machine(), 1, time, 1);
    for (std::size_t i = 0; i < load.clusters.size(); ++i) {
      EXPECT_LE(load.clusters[i].milliwatts, machine().clusters[i].peakMilliwatts() + kSharedParts);
    }
    EXPECT_LE(load.gpuMilliwatts, machine().gpu.peakMilliwatts + kSharedParts);
    EXPECT_LE(load.aneMilliwatts, machine().anePeakMilliwatts);
  }
}

Series settledTemperatures(const MachineDescription& machine, double demand) {
  const MachineHeat heat = settledHeat(machine, loadFor(machine, 1, 10, demand));
  Series temperatures = heat.clusters;
  temperatures.push_back(heat.gpu);
  return temperatures;
}

TEST_P(Physics, AtRestEveryPartSettlesAtALukewarmTemperature) {
  for (const double temperature : settledTemperatures(machine(), 0)) {
    EXPECT_GE(temperature, 30);
    EXPECT_LE(temperature, 45);
  }
}

TEST_P(Physics, AtFullLoadEveryPartSettlesBelowAHundredDegrees) {
  for (const double temperature : settledTemperatures(machine(), 1)) {
    EXPECT_GE(temperature, 60);
    EXPECT_LE(temperature, 100);
  }
}

std::vector<std::string> machineNames() {
  std::vector<std::string> names;
  for (const MachineDescription& machine : builtinMachines()) names.push_back(machine.name);
  return names;
}

std::string testName(const ::testing::TestParamInfo<std::string>& machine) {
  std::string name = machine.param;
  name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
  return name;
}

INSTANTIATE_TEST_SUITE_P(Builtin, Physics, ::testing::ValuesIn(machineNames()), testName);

}  // namespace
}  // namespace pallimo::adapters::simulated
