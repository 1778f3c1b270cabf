// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/metric_families.h"

#include <gtest/gtest.h>

#include <cctype>
#include <limits>
#include <memory>
#include <set>
#include <string>

#include "unit/serving/series_text.h"

namespace pallimo::serving {
namespace {

using ports::MetricFamilies;
using ports::MetricFamily;
using tests::holdsSeries;
using tests::seriesText;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

MachineInfo wholeMachine() { return {"Mac14,9", "Apple M2 Pro", "Apple M2 Pro", 4, 8, 19}; }

/// Everything measured, each figure another number.
ServedSample wholeSample() {
  ServedSample sample;
  sample.row.pkgPower = 12.5;
  sample.row.cpuPower = 8;
  sample.row.gpuPower = 3.25;
  sample.row.dramPower = 1;
  sample.row.anePower = 0.125;
  sample.row.cpuECoreFrequency = 1100;
  sample.row.cpuPCoreFrequency = 3200.5;
  sample.row.gpuFrequency = 444;
  sample.row.cpuMinTmp = 30;
  sample.row.cpuAvgTmp = 40.5;
  sample.row.cpuMaxTmp = 50;
  sample.row.gpuAvgTmp = 35;
  sample.row.cpuUtilization = 25;
  sample.row.cpuEUtilization = 50;
  sample.row.cpuPUtilization = 12.5;
  sample.row.gpuUtilization = 75;
  sample.measured = {true, true, true, true, true, true, true, true, true, true};
  sample.samplingPeriod = 500;
  return sample;
}

ServedState stateWith(const ServedSample& sample) {
  return {"1.2.3", std::make_shared<const MachineInfo>(wholeMachine()),
          std::make_shared<const ServedSample>(sample), 7, 1772715753.123};
}

MetricFamilies familiesOf(const ServedSample& sample) {
  return metricFamilies(stateWith(sample), true);
}

TEST(MetricFamilies, TellEveryFigureInBaseUnits) {
  EXPECT_EQ(seriesText(familiesOf(wholeSample())),
            R"(pallimo_build_info{version="1.2.3"} 1
pallimo_machine_info{model="Mac14,9",chip="Apple M2 Pro",gpu="Apple M2 Pro"} 1
pallimo_cores{kind="efficiency"} 4
pallimo_cores{kind="performance"} 8
pallimo_cores{kind="gpu"} 19
pallimo_helper_up 1
pallimo_samples_total 7
pallimo_last_sample_timestamp_seconds 1772715753.123
pallimo_sampling_period_seconds 0.5
pallimo_power_watts{domain="package"} 12.5
pallimo_power_watts{domain="cpu"} 8
pallimo_power_watts{domain="gpu"} 3.25
pallimo_power_watts{domain="dram"} 1
pallimo_power_watts{domain="ane"} 0.125
pallimo_frequency_hertz{domain="efficiency_cores"} 1100000000
pallimo_frequency_hertz{domain="performance_cores"} 3200500000
pallimo_frequency_hertz{domain="gpu"} 444000000
pallimo_temperature_celsius{domain="cpu",statistic="min"} 30
pallimo_temperature_celsius{domain="cpu",statistic="avg"} 40.5
pallimo_temperature_celsius{domain="cpu",statistic="max"} 50
pallimo_temperature_celsius{domain="gpu",statistic="avg"} 35
pallimo_utilization_ratio{domain="cpu"} 0.25
pallimo_utilization_ratio{domain="efficiency_cores"} 0.5
pallimo_utilization_ratio{domain="performance_cores"} 0.125
pallimo_utilization_ratio{domain="gpu"} 0.75
)");
}

TEST(MetricFamilies, TellNoFigureThatWasNotMeasured) {
  ServedSample sample = wholeSample();
  sample.measured = {};
  EXPECT_EQ(seriesText(familiesOf(sample)),
            R"(pallimo_build_info{version="1.2.3"} 1
pallimo_machine_info{model="Mac14,9",chip="Apple M2 Pro",gpu="Apple M2 Pro"} 1
pallimo_cores{kind="efficiency"} 4
pallimo_cores{kind="performance"} 8
pallimo_cores{kind="gpu"} 19
pallimo_helper_up 1
pallimo_samples_total 7
pallimo_last_sample_timestamp_seconds 1772715753.123
pallimo_sampling_period_seconds 0.5
pallimo_temperature_celsius{domain="cpu",statistic="min"} 30
pallimo_temperature_celsius{domain="cpu",statistic="avg"} 40.5
pallimo_temperature_celsius{domain="cpu",statistic="max"} 50
pallimo_temperature_celsius{domain="gpu",statistic="avg"} 35
pallimo_utilization_ratio{domain="cpu"} 0.25
)");
}

TEST(MetricFamilies, EachFigureIsThereByItself) {
  const auto onlyWith = [](bool MeasuredFigures::*figure) {
    ServedSample sample = wholeSample();
    sample.measured = {};
    sample.measured.*figure = true;
    return familiesOf(sample);
  };
  EXPECT_TRUE(
      holdsSeries(onlyWith(&MeasuredFigures::pkgPower), "pallimo_power_watts{domain=\"package\"}"));
  EXPECT_TRUE(
      holdsSeries(onlyWith(&MeasuredFigures::cpuPower), "pallimo_power_watts{domain=\"cpu\"}"));
  EXPECT_TRUE(
      holdsSeries(onlyWith(&MeasuredFigures::gpuPower), "pallimo_power_watts{domain=\"gpu\"}"));
  EXPECT_TRUE(
      holdsSeries(onlyWith(&MeasuredFigures::dramPower), "pallimo_power_watts{domain=\"dram\"}"));
  EXPECT_TRUE(
      holdsSeries(onlyWith(&MeasuredFigures::anePower), "pallimo_power_watts{domain=\"ane\"}"));
  EXPECT_TRUE(holdsSeries(onlyWith(&MeasuredFigures::cpuECoreFrequency),
                          "pallimo_frequency_hertz{domain=\"efficiency_cores\"}"));
  EXPECT_TRUE(holdsSeries(onlyWith(&MeasuredFigures::cpuPCoreFrequency),
                          "pallimo_frequency_hertz{domain=\"performance_cores\"}"));
  EXPECT_TRUE(holdsSeries(onlyWith(&MeasuredFigures::gpuFrequency),
                          "pallimo_frequency_hertz{domain=\"gpu\"}"));
  EXPECT_TRUE(holdsSeries(onlyWith(&MeasuredFigures::coreUtilization),
                          "pallimo_utilization_ratio{domain=\"efficiency_cores\"}"));
  EXPECT_TRUE(holdsSeries(onlyWith(&MeasuredFigures::gpuUtilization),
                          "pallimo_utilization_ratio{domain=\"gpu\"}"));
}

TEST(MetricFamilies, AFigureThatWasMeasuredAs0IsTold) {
  ServedSample sample = wholeSample();
  sample.row.anePower = 0;
  sample.row.cpuPCoreFrequency = 0;
  const MetricFamilies families = familiesOf(sample);
  EXPECT_TRUE(holdsSeries(families, "pallimo_power_watts{domain=\"ane\"} 0\n"));
  EXPECT_TRUE(holdsSeries(families, "pallimo_frequency_hertz{domain=\"performance_cores\"} 0\n"));
}

TEST(MetricFamilies, AnAbsentSensorHasNoTemperature) {
  ServedSample sample = wholeSample();
  sample.row.cpuMinTmp = -1;
  sample.row.cpuMaxTmp = -1;
  sample.row.cpuAvgTmp = kNan;
  sample.row.gpuAvgTmp = kNan;
  EXPECT_FALSE(holdsSeries(familiesOf(sample), "pallimo_temperature_celsius"));
}

TEST(MetricFamilies, ASilentSensorTakesItsOwnFigureOnly) {
  ServedSample sample = wholeSample();
  sample.row.cpuMinTmp = -1;
  const MetricFamilies families = familiesOf(sample);
  EXPECT_FALSE(holdsSeries(families, "pallimo_temperature_celsius{domain=\"cpu\",statistic=\"min"));
  EXPECT_TRUE(holdsSeries(families, "pallimo_temperature_celsius{domain=\"cpu\",statistic=\"max"));
}

TEST(MetricFamilies, AKindOfCoreThatTheMachineLacksHasNoUtilization) {
  ServedSample sample = wholeSample();
  sample.row.cpuPUtilization = kNan;
  const MetricFamilies families = familiesOf(sample);
  EXPECT_FALSE(holdsSeries(families, "pallimo_utilization_ratio{domain=\"performance_cores\"}"));
  EXPECT_TRUE(holdsSeries(families, "pallimo_utilization_ratio{domain=\"efficiency_cores\"} 0.5"));
}

TEST(MetricFamilies, NoFigureIsInfinite) {
  ServedSample sample = wholeSample();
  sample.row.cpuPower = std::numeric_limits<double>::infinity();
  sample.row.cpuUtilization = -std::numeric_limits<double>::infinity();
  const MetricFamilies families = familiesOf(sample);
  EXPECT_FALSE(holdsSeries(families, "pallimo_power_watts{domain=\"cpu\"}"));
  EXPECT_FALSE(holdsSeries(families, "pallimo_utilization_ratio{domain=\"cpu\"}"));
}

TEST(MetricFamilies, BeforeTheFirstSampleThereIsNeitherFigureNorTime) {
  ServedState state;
  state.version = "1.2.3";
  EXPECT_EQ(seriesText(metricFamilies(state, false)), R"(pallimo_build_info{version="1.2.3"} 1
pallimo_helper_up 0
pallimo_samples_total 0
)");
}

TEST(MetricFamilies, WithoutFiguresThePastIsToldAllTheSame) {
  ServedState state = stateWith(wholeSample());
  state.current = nullptr;
  state.machine = nullptr;
  EXPECT_EQ(seriesText(metricFamilies(state, false)), R"(pallimo_build_info{version="1.2.3"} 1
pallimo_helper_up 0
pallimo_samples_total 7
pallimo_last_sample_timestamp_seconds 1772715753.123
)");
}

TEST(MetricFamilies, WhatIsUnknownOfTheMachineIsLeftOut) {
  ServedState state;
  state.machine = std::make_shared<const MachineInfo>(MachineInfo{
      "Mac14,9", "Apple M2 Pro", std::nullopt, std::nullopt, std::nullopt, std::nullopt});
  const MetricFamilies families = metricFamilies(state, false);
  EXPECT_TRUE(
      holdsSeries(families, "pallimo_machine_info{model=\"Mac14,9\",chip=\"Apple M2 Pro\"} 1"));
  EXPECT_FALSE(holdsSeries(families, "pallimo_cores"));
}

/// Prometheus's conventions for names: https://prometheus.io/docs/practices/naming/.
TEST(MetricFamilies, FollowTheConventions) {
  const std::set<std::string> units = {"watts", "hertz", "celsius", "ratio", "seconds"};
  const std::set<std::string> withoutUnit = {"pallimo_build_info", "pallimo_machine_info",
                                             "pallimo_cores", "pallimo_helper_up"};
  std::set<std::string> names;
  for (const MetricFamily& family : familiesOf(wholeSample())) {
    const std::string& name = family.name;
    EXPECT_TRUE(names.insert(name).second) << name << " stands twice";
    EXPECT_EQ(name.rfind("pallimo_", 0), 0u) << name;
    const std::string last = name.substr(name.rfind('_') + 1);
    if (family.kind == MetricFamily::Kind::counter) {
      EXPECT_EQ(last, "total") << name;
    } else {
      EXPECT_TRUE(units.count(last) == 1 || withoutUnit.count(name) == 1) << name;
    }
    EXPECT_FALSE(family.help.empty()) << name;
    std::set<std::vector<std::pair<std::string, std::string>>> seen;
    for (const auto& series : family.series) {
      EXPECT_TRUE(seen.insert(series.labels).second) << name << " has two series alike";
    }
  }
}

}  // namespace
}  // namespace pallimo::serving
