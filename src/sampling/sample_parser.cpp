// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sampling/sample_parser.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pallimo::sampling {

namespace {

using base::PropertyList;

constexpr std::string_view kEfficiency = "E";
constexpr std::string_view kPerformance = "P";
constexpr std::string_view kClusterWord = "-Cluster";
constexpr double kHertzPerMegahertz = 1'000'000;

// Ten numbered clusters a kind and no more: "E10-Cluster" is nobody's.
constexpr std::array<std::string_view, 11> kSuffixes = {"",  "0", "1", "2", "3", "4",
                                                        "5", "6", "7", "8", "9"};

constexpr std::array<std::string_view, 5> kPowerKeys = {
    "cpu_energy", "dram_energy", "combined_power", "gpu_energy", "ane_energy"};

/// What the functions below look at: some forty values of a document's thousands. The rest, mostly
/// how long each core spent at each of its frequencies, is not even read into memory.
const ports::Wanted& lookedAt() {
  static const ports::Wanted all = [] {
    ports::Wanted processor{{"clusters", {{"name"}, {"freq_hz"}, {"cpus", {{"cpu"}}}}}};
    for (const std::string_view key : kPowerKeys) processor.push_back({key});
    return ports::Wanted{{"processor", processor}, {"gpu", {{"freq_hz"}}}};
  }();
  return all;
}

template <typename Value>
using ClusterTable = std::map<std::string_view, Value>;

std::string clusterName(std::string_view kind, std::string_view suffix) {
  std::string name;
  name.append(kind).append(suffix).append(kClusterWord);
  return name;
}

const PropertyList* section(const PropertyList& sample, std::string_view name) {
  const PropertyList* value = sample.find(name);
  return value != nullptr && value->dictionary() != nullptr ? value : nullptr;
}

const base::PropertyListArray& arrayOrEmpty(const PropertyList* value) {
  static const base::PropertyListArray empty;
  const base::PropertyListArray* entries = value != nullptr ? value->array() : nullptr;
  return entries != nullptr ? *entries : empty;
}

const base::PropertyListArray& clustersOf(const PropertyList& sample) {
  const PropertyList* processor = section(sample, "processor");
  return arrayOrEmpty(processor != nullptr ? processor->find("clusters") : nullptr);
}

const std::string* nameOf(const PropertyList& cluster) {
  const PropertyList* name = cluster.find("name");
  return name != nullptr ? name->text() : nullptr;
}

std::optional<double> hertzOf(const PropertyList& cluster) {
  const PropertyList* frequency = cluster.find("freq_hz");
  if (frequency == nullptr || !frequency->isNumber()) return std::nullopt;
  return frequency->numberOr(0);
}

std::vector<std::int64_t> cpuNumbers(const PropertyList& cluster) {
  std::vector<std::int64_t> numbers;
  for (const PropertyList& entry : arrayOrEmpty(cluster.find("cpus"))) {
    const PropertyList* cpu = entry.find("cpu");
    std::int64_t number = 0;
    if (cpu != nullptr && cpu->readInteger(number)) numbers.push_back(number);
  }
  return numbers;
}

double highestFrequency(const ClusterTable<double>& table, std::string_view kind) {
  double highest = 0;
  for (const std::string_view suffix : kSuffixes) {
    const auto found = table.find(clusterName(kind, suffix));
    if (found != table.end() && found->second > highest) highest = found->second;
  }
  return highest;
}

std::vector<std::int64_t> concatenated(const ClusterTable<std::vector<std::int64_t>>& table,
                                       std::string_view kind) {
  std::vector<std::int64_t> all;
  for (const std::string_view suffix : kSuffixes) {
    const auto found = table.find(clusterName(kind, suffix));
    if (found == table.end()) continue;
    all.insert(all.end(), found->second.begin(), found->second.end());
  }
  return all;
}

}  // namespace

base::PropertyList parseSample(const ports::PropertyListReader& reader,
                               std::span<const std::uint8_t> bytes) {
  std::optional<PropertyList> document = reader.readOnly(bytes, lookedAt());
  if (!document || document->dictionary() == nullptr) return PropertyList();
  return std::move(*document);
}

PowerValues powerValues(const base::PropertyList& sample) {
  PowerValues values;
  const PropertyList* processor = section(sample, "processor");
  if (processor == nullptr) return values;
  for (const std::string_view key : kPowerKeys) {
    if (const PropertyList* value = processor->find(key)) values.emplace(key, *value);
  }
  return values;
}

ClusterFrequencies clusterFrequencies(const base::PropertyList& sample) {
  ClusterTable<double> table;
  for (const PropertyList& cluster : clustersOf(sample)) {
    const std::string* name = nameOf(cluster);
    const std::optional<double> hertz = hertzOf(cluster);
    if (name != nullptr && hertz) table[*name] = *hertz;
  }
  return {
      {clusterName(kEfficiency, ""), highestFrequency(table, kEfficiency) / kHertzPerMegahertz},
      {clusterName(kPerformance, ""), highestFrequency(table, kPerformance) / kHertzPerMegahertz}};
}

GPUFrequency gpuFrequency(const base::PropertyList& sample) {
  const PropertyList* gpu = section(sample, "gpu");
  const PropertyList* frequency = gpu != nullptr ? gpu->find("freq_hz") : nullptr;
  if (frequency == nullptr) return {};
  return {{"freq_hz", *frequency}};
}

ClusterCPUs clusterCPUs(const base::PropertyList& sample) {
  ClusterTable<std::vector<std::int64_t>> table;
  for (const PropertyList& cluster : clustersOf(sample)) {
    if (const std::string* name = nameOf(cluster)) table[*name] = cpuNumbers(cluster);
  }
  if (table.empty()) return {};
  return {{clusterName(kEfficiency, ""), concatenated(table, kEfficiency)},
          {clusterName(kPerformance, ""), concatenated(table, kPerformance)}};
}

std::vector<Cluster> allClusters(const base::PropertyList& sample) {
  std::vector<Cluster> all;
  for (const PropertyList& entry : clustersOf(sample)) {
    if (entry.dictionary() == nullptr) continue;
    Cluster& cluster = all.emplace_back();
    if (const std::string* name = nameOf(entry)) cluster.name = *name;
    if (const auto hertz = hertzOf(entry)) cluster.frequency = *hertz / kHertzPerMegahertz;
    cluster.cpus = cpuNumbers(entry);
  }
  return all;
}

}  // namespace pallimo::sampling
