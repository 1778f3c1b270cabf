// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/metric_families.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace pallimo::serving {

namespace {

using ports::MetricFamilies;
using ports::MetricFamily;
using Kind = MetricFamily::Kind;
using Labels = std::vector<std::pair<std::string, std::string>>;

constexpr double kHertzPerMegahertz = 1'000'000;
constexpr double kPercent = 100;
constexpr double kMillisecondsPerSecond = 1000;
// What an absent sensor of the CPU reads, and a silent one of the HID source.
constexpr double kNoTemperature = -1;

constexpr std::string_view kDomain = "domain";
constexpr std::string_view kEfficiencyCores = "efficiency_cores";
constexpr std::string_view kPerformanceCores = "performance_cores";

/// A family that grows by the figures that are there.
class Growing {
 public:
  Growing(std::string_view name, std::string_view help, Kind kind = Kind::gauge)
      : family_{std::string(name), std::string(help), kind, {}} {}

  Growing& add(Labels labels, double value) {
    family_.series.push_back({std::move(labels), value});
    return *this;
  }
  Growing& addIf(bool isThere, std::string_view domain, double value) {
    if (isThere && std::isfinite(value)) add(domainLabel(domain), value);
    return *this;
  }
  Growing& addTemperature(std::string_view domain, std::string_view statistic, double celsius) {
    if (!std::isfinite(celsius) || celsius == kNoTemperature) return *this;
    Labels labels = domainLabel(domain);
    labels.emplace_back("statistic", statistic);
    return add(std::move(labels), celsius);
  }
  Growing& addCores(std::string_view kind, const std::optional<std::int64_t>& count) {
    if (count) add({{"kind", std::string(kind)}}, static_cast<double>(*count));
    return *this;
  }
  void moveInto(MetricFamilies& families) {
    if (!family_.series.empty()) families.push_back(std::move(family_));
  }

 private:
  static Labels domainLabel(std::string_view domain) {
    return {{std::string(kDomain), std::string(domain)}};
  }

  MetricFamily family_;
};

void appendMachine(MetricFamilies& families, const MachineInfo& machine) {
  Labels labels = {{"model", machine.model}, {"chip", machine.chip}};
  if (machine.gpu) labels.emplace_back("gpu", *machine.gpu);
  Growing("pallimo_machine_info", "The machine that is measured; always 1.")
      .add(std::move(labels), 1)
      .moveInto(families);
  Growing("pallimo_cores", "How many cores of a kind the machine has.")
      .addCores("efficiency", machine.efficiencyCores)
      .addCores("performance", machine.performanceCores)
      .addCores("gpu", machine.gpuCores)
      .moveInto(families);
}

void appendProgress(MetricFamilies& families, const ServedState& state, bool isHelperUp) {
  Growing("pallimo_helper_up", "Whether the helper may be asked for samples (1) or not (0).")
      .add({}, isHelperUp ? 1 : 0)
      .moveInto(families);
  Growing("pallimo_samples_total", "Samples taken since the program's start.", Kind::counter)
      .add({}, static_cast<double>(state.samples))
      .moveInto(families);
  if (!state.lastSample) return;
  Growing("pallimo_last_sample_timestamp_seconds", "When the last sample was taken, since 1970.")
      .add({}, *state.lastSample)
      .moveInto(families);
}

void appendPower(MetricFamilies& families, const ServedSample& sample) {
  const auto& [row, measured, period] = sample;
  Growing("pallimo_power_watts", "Power over the sampling period.")
      .addIf(measured.pkgPower, "package", row.pkgPower)
      .addIf(measured.cpuPower, "cpu", row.cpuPower)
      .addIf(measured.gpuPower, "gpu", row.gpuPower)
      .addIf(measured.dramPower, "dram", row.dramPower)
      .addIf(measured.anePower, "ane", row.anePower)
      .moveInto(families);
}

void appendFrequencies(MetricFamilies& families, const ServedSample& sample) {
  const auto& [row, measured, period] = sample;
  Growing("pallimo_frequency_hertz", "Frequency over the sampling period, of the fastest cluster.")
      .addIf(measured.cpuECoreFrequency, kEfficiencyCores,
             row.cpuECoreFrequency * kHertzPerMegahertz)
      .addIf(measured.cpuPCoreFrequency, kPerformanceCores,
             row.cpuPCoreFrequency * kHertzPerMegahertz)
      .addIf(measured.gpuFrequency, "gpu", row.gpuFrequency * kHertzPerMegahertz)
      .moveInto(families);
}

void appendTemperatures(MetricFamilies& families, const logging::LogRow& row) {
  Growing("pallimo_temperature_celsius", "Temperature over the sensors, when the sample was taken.")
      .addTemperature("cpu", "min", row.cpuMinTmp)
      .addTemperature("cpu", "avg", row.cpuAvgTmp)
      .addTemperature("cpu", "max", row.cpuMaxTmp)
      .addTemperature("gpu", "avg", row.gpuAvgTmp)
      .moveInto(families);
}

void appendUtilization(MetricFamilies& families, const ServedSample& sample) {
  const auto& [row, measured, period] = sample;
  Growing("pallimo_utilization_ratio", "How busy, since the sample before; the GPU at the moment.")
      .addIf(true, "cpu", row.cpuUtilization / kPercent)
      .addIf(measured.coreUtilization, kEfficiencyCores, row.cpuEUtilization / kPercent)
      .addIf(measured.coreUtilization, kPerformanceCores, row.cpuPUtilization / kPercent)
      .addIf(measured.gpuUtilization, "gpu", row.gpuUtilization / kPercent)
      .moveInto(families);
}

}  // namespace

MetricFamilies metricFamilies(const ServedState& state, bool isHelperUp) {
  MetricFamilies families;
  Growing("pallimo_build_info", "The program that serves these figures; always 1.")
      .add({{"version", state.version}}, 1)
      .moveInto(families);
  if (state.machine) appendMachine(families, *state.machine);
  appendProgress(families, state, isHelperUp);
  if (!state.current) return families;
  const ServedSample& sample = *state.current;
  Growing("pallimo_sampling_period_seconds", "How long powermetrics measures for a sample.")
      .add({}, sample.samplingPeriod / kMillisecondsPerSecond)
      .moveInto(families);
  appendPower(families, sample);
  appendFrequencies(families, sample);
  appendTemperatures(families, sample.row);
  appendUtilization(families, sample);
  return families;
}

}  // namespace pallimo::serving
