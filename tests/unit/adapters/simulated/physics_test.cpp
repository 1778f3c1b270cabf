// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "adapters/simulated/machine_past.h"
#include "adapters/simulated/machines.h"
#include "correlation.h"
#include "sampled_machine.h"

namespace pallimo::adapters::simulated {
namespace {

using tests::laggedCorrelation;
using tests::lagOfBest;
using tests::MachineSample;
using tests::meanOf;
using tests::rankCorrelation;
using tests::SampledMachine;
using tests::Series;

/// Ten minutes of a machine, one figure at a time.
class TenMinutes {
 public:
  explicit TenMinutes(const MachineDescription& machine) {
    SampledMachine sampled(machine, 1);
    for (int second = 0; second < 600; ++second) samples_.push_back(sampled.next());
  }

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

  std::vector<MachineSample> samples_;
};

void packagePowerIsTheSumOfItsParts(const TenMinutes& minutes) {
  for (const MachineSample& sample : minutes.samples()) {
    const double sum = sample.cpu + sample.gpu + sample.ane;
    EXPECT_GT(sum, 0);
    EXPECT_NEAR(sample.package, sum, 0.05 * sum);
  }
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

void noTwoSamplesAreEqual(const TenMinutes& minutes) {
  std::vector<MachineSample> visible = minutes.samples();
  for (MachineSample& sample : visible) sample.demand = 0;
  for (std::size_t i = 0; i < visible.size(); ++i) {
    EXPECT_EQ(std::count(visible.begin(), visible.end(), visible[i]), 1) << i;
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
        temperatureFollowsPowerWithADelay, utilisationIsAShare, noTwoSamplesAreEqual,
        allPanelsTellTheSameStory, quietAndBusyMomentsDifferMuch}) {
    rule(minutes);
  }
}

TEST_P(Physics, MoreDemandAtTheSameMomentLowersNothing) {
  for (double time = 0; time < 120; time += 1.7) {
    Load less = loadFor(machine(), 1, time, 0);
    for (int percent = 1; percent <= 100; ++percent) {
      Load more = loadFor(machine(), 1, time, percent / 100.0);
      for (std::size_t i = 0; i < more.clusters.size(); ++i) {
        const auto& table = machine().clusters[i].frequencies;
        EXPECT_GE(more.clusters[i].whole.frequency(table) + 1e-9,
                  less.clusters[i].whole.frequency(table));
        EXPECT_GE(more.clusters[i].whole.active + 1e-12, less.clusters[i].whole.active);
      }
      EXPECT_GE(more.gpu.frequency(machine().gpu.frequencies) + 1e-9,
                less.gpu.frequency(machine().gpu.frequencies));
      EXPECT_GE(more.cpuMilliwatts + 1e-9, less.cpuMilliwatts);
      EXPECT_GE(more.gpuMilliwatts + 1e-9, less.gpuMilliwatts);
      EXPECT_GE(more.packageMilliwatts() + 1e-9, less.packageMilliwatts());
      less = std::move(more);
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
