// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/powermetrics_document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "adapters/libplist/libplist_reader.h"
#include "adapters/simulated/machines/machines.h"

namespace pallimo::adapters::simulated {
namespace {

using base::PropertyList;
using namespace std::chrono_literals;

DocumentRequest requestAt(double time) {
  DocumentRequest request;
  request.seed = 3;
  request.startTime = 1'790'000'000;
  request.time = time;
  request.samplers = {.cpuPower = true, .gpuPower = true, .anePower = true, .thermal = false};
  return request;
}

base::Bytes bytesOf(const DocumentRequest& request) {
  return powermetricsDocument(*findMachine("MacBook Pro M2 Pro"), request);
}

std::string textOf(const DocumentRequest& request) {
  const base::Bytes bytes = bytesOf(request);
  return {bytes.begin(), bytes.end()};
}

PropertyList parsed(const DocumentRequest& request) {
  auto document = libplist::LibplistReader().read(bytesOf(request));
  EXPECT_TRUE(document) << "not a property list";
  return document ? *document : PropertyList();
}

/// The value at the end of a road of keys; an empty dictionary, which is no number, if it ends.
const PropertyList& at(const PropertyList& from, const std::vector<std::string>& road) {
  static const PropertyList kNothing;
  const PropertyList* value = &from;
  for (const std::string& key : road) {
    value = value->find(key);
    if (value == nullptr) {
      ADD_FAILURE() << "no key " << key;
      return kNothing;
    }
  }
  return *value;
}

double number(const PropertyList& from, const std::vector<std::string>& road) {
  return at(from, road).numberOr(-1);
}

std::vector<std::string> keysOf(const PropertyList& dictionary) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : *dictionary.dictionary()) keys.push_back(key);
  return keys;
}

base::PropertyListArray clustersOf(const PropertyList& document) {
  return *at(document, {"processor", "clusters"}).array();
}

/// Everything in the document that has a frequency table.
std::vector<PropertyList> unitsOf(const PropertyList& document) {
  std::vector<PropertyList> units{at(document, {"gpu"})};
  for (const PropertyList& cluster : clustersOf(document)) {
    units.push_back(cluster);
    const auto& cpus = *at(cluster, {"cpus"}).array();
    units.insert(units.end(), cpus.begin(), cpus.end());
  }
  return units;
}

TEST(PowermetricsDocument, BeginsAndEndsLikeTheSystems) {
  const std::string text = textOf(requestAt(10));
  EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC ", 0),
            0u);
  EXPECT_EQ(text.substr(text.size() - 17), "</dict>\n</plist>\n");
}

TEST(PowermetricsDocument, HasNoIndentationAndUnixLineEnds) {
  const std::string text = textOf(requestAt(10));
  EXPECT_EQ(text.find("\n "), std::string::npos);
  EXPECT_EQ(text.find('\t'), std::string::npos);
  EXPECT_EQ(text.find('\r'), std::string::npos);
  EXPECT_EQ(text.find('\0'), std::string::npos);
}

TEST(PowermetricsDocument, IsAsLongAsARealOne) {
  EXPECT_GT(textOf(requestAt(10)).size(), 20'000u);
  EXPECT_LT(textOf(requestAt(10)).size(), 65'000u);
}

TEST(PowermetricsDocument, BeginsWithTheSameKeysAsARealOne) {
  EXPECT_EQ(keysOf(parsed(requestAt(10))),
            (std::vector<std::string>{"is_delta", "elapsed_ns", "hw_model", "kern_osversion",
                                      "kern_bootargs", "kern_boottime", "timestamp", "processor",
                                      "gpu"}));
}

TEST(PowermetricsDocument, DescribesItsMachine) {
  const PropertyList document = parsed(requestAt(10));
  EXPECT_TRUE(*at(document, {"is_delta"}).boolean());
  EXPECT_EQ(*at(document, {"hw_model"}).text(), "Mac14,9");
  EXPECT_EQ(*at(document, {"kern_osversion"}).text(), "23G93");
  EXPECT_EQ(*at(document, {"kern_bootargs"}).text(), "");
  EXPECT_EQ(number(document, {"kern_boottime"}), 1'789'906'216);
}

TEST(PowermetricsDocument, CarriesTheMomentAtWhichItsSampleEnded) {
  DocumentRequest request = requestAt(10.9);
  request.startTime = 1'712'961'750;
  EXPECT_NE(textOf(request).find("<key>timestamp</key><date>2024-04-12T22:42:40Z</date>\n"),
            std::string::npos);
}

TEST(PowermetricsDocument, TakesAtMostTwoPercentLongerThanThePeriod) {
  for (const auto period : {1ms, 500ms, 1000ms, 60'000ms}) {
    for (double time = 0; time < 50; time += 1) {
      DocumentRequest request = requestAt(time);
      request.period = period;
      request.samplers = {};
      const double elapsed = number(parsed(request), {"elapsed_ns"}) / 1e6;
      EXPECT_GE(elapsed, static_cast<double>(period.count()));
      EXPECT_LE(elapsed, 1.02 * static_cast<double>(period.count()) + 1e-6);
    }
  }
}

/// A machine and the clusters that its chip has, each with its processors' numbers.
struct ChipsClusters {
  const char* machine;
  const char* clusters;
};

std::ostream& operator<<(std::ostream& out, const ChipsClusters& chip) {
  return out << chip.machine;
}

/// "E-Cluster 0 1; P-Cluster 2": what the document lists, in its order.
std::string clusterTextOf(const std::string& machine) {
  const auto document =
      libplist::LibplistReader().read(powermetricsDocument(*findMachine(machine), requestAt(10)));
  if (!document) return "no property list";
  std::string text;
  for (const PropertyList& cluster : clustersOf(*document)) {
    if (!text.empty()) text += "; ";
    text += *at(cluster, {"name"}).text();
    for (const PropertyList& cpu : *at(cluster, {"cpus"}).array()) {
      std::int64_t id = -1;
      EXPECT_TRUE(at(cpu, {"cpu"}).readInteger(id));
      text += ' ';
      text += std::to_string(id);
    }
  }
  return text;
}

class EveryPowermetricsDocument : public ::testing::TestWithParam<ChipsClusters> {};

TEST_P(EveryPowermetricsDocument, NamesTheClustersAndTheirProcessors) {
  EXPECT_EQ(clusterTextOf(GetParam().machine), GetParam().clusters);
}

constexpr ChipsClusters kChips[] = {
    {"MacBook Air M1", "E-Cluster 0 1 2 3; P-Cluster 4 5 6 7"},
    {"MacBook Pro M1 Pro", "E-Cluster 0 1; P0-Cluster 2 3 4 5; P1-Cluster 6 7 8 9"},
    {"MacBook Pro M2 Pro", "E-Cluster 0 1 2 3; P0-Cluster 4 5 6 7; P1-Cluster 8 9 10 11"},
    {"Mac Studio M2 Ultra",
     "E0-Cluster 0 1 2 3; P0-Cluster 4 5 6 7; P1-Cluster 8 9 10 11; E1-Cluster 12 13 14 15; "
     "P2-Cluster 16 17 18 19; P3-Cluster 20 21 22 23"},
    {"Mac mini M4", "E-Cluster 0 1 2 3 4 5; P-Cluster 6 7 8 9"},
    {"MacBook Pro M4 Max",
     "E-Cluster 0 1 2 3; P0-Cluster 4 5 6 7 8 9; P1-Cluster 10 11 12 13 14 15"},
    {"MacBook Pro M5 Pro",
     "P0-Cluster 0 1 2 3 4 5; P1-Cluster 6 7 8 9 10 11; S-Cluster 12 13 14 15 16 17"},
};
INSTANTIATE_TEST_SUITE_P(Builtin, EveryPowermetricsDocument, ::testing::ValuesIn(kChips));

TEST(PowermetricsDocument, EveryMachinesClustersAreWrittenDownAbove) {
  EXPECT_EQ(builtinMachines().size(), std::size(kChips));
}

TEST(PowermetricsDocument, AClusterHasTheKeysOfARealOne) {
  const PropertyList document = parsed(requestAt(10));
  const PropertyList cluster = clustersOf(document).front();
  EXPECT_EQ(keysOf(cluster),
            (std::vector<std::string>{"name", "hw_resid_counters", "freq_hz", "idle_ns",
                                      "idle_ratio", "dvfm_states", "online_ratio", "cpus"}));
  EXPECT_EQ(keysOf(at(cluster, {"cpus"}).array()->front()),
            (std::vector<std::string>{"cpu", "freq_hz", "idle_ns", "idle_ratio", "dvfm_states"}));
}

TEST(PowermetricsDocument, TheProcessorEndsWithEnergiesAndPowers) {
  EXPECT_EQ(keysOf(at(parsed(requestAt(10)), {"processor"})),
            (std::vector<std::string>{"clusters", "cpu_energy", "cpu_power", "gpu_energy",
                                      "gpu_power", "ane_energy", "ane_power", "combined_power"}));
}

TEST(PowermetricsDocument, TheGpuHasTheKeysOfARealOne) {
  EXPECT_EQ(keysOf(at(parsed(requestAt(10)), {"gpu"})),
            (std::vector<std::string>{"freq_hz", "idle_ns", "idle_ratio", "dvfm_states",
                                      "sw_requested_state", "sw_state", "gpu_energy"}));
}

TEST(PowermetricsDocument, TheGpuRepeatsItsIdleTimeAsARealOne) {
  const std::string text = textOf(requestAt(10));
  const std::string gpu = text.substr(text.find("<key>gpu</key>"));
  const std::size_t first = gpu.find("<key>idle_ns</key>");
  const std::string line = gpu.substr(first, gpu.find('\n', first) - first);
  EXPECT_NE(gpu.find(line, first + 1), std::string::npos);
}

TEST(PowermetricsDocument, ProcessorFrequenciesAreInHertz) {
  for (const PropertyList& cluster : clustersOf(parsed(requestAt(10)))) {
    EXPECT_GE(number(cluster, {"freq_hz"}), 600e6);
    EXPECT_LE(number(cluster, {"freq_hz"}), 3504e6);
  }
}

TEST(PowermetricsDocument, GpuFrequenciesAreInMegahertz) {
  EXPECT_GE(number(parsed(requestAt(10)), {"gpu", "freq_hz"}), 444);
  EXPECT_LE(number(parsed(requestAt(10)), {"gpu", "freq_hz"}), 1398);
}

TEST(PowermetricsDocument, ResidenciesAndIdleTimeAddUpToTheSample) {
  const PropertyList document = parsed(requestAt(10));
  for (const PropertyList& unit : unitsOf(document)) {
    double ratios = number(unit, {"idle_ratio"});
    double times = number(unit, {"idle_ns"});
    for (const PropertyList& state : *at(unit, {"dvfm_states"}).array()) {
      ratios += number(state, {"used_ratio"});
      times += number(state, {"used_ns"});
    }
    EXPECT_NEAR(ratios, 1, 1e-5);
    EXPECT_NEAR(times, number(document, {"elapsed_ns"}), 20);
  }
}

TEST(PowermetricsDocument, TheFrequencyIsTheMeanOfTheResidencies) {
  const PropertyList document = parsed(requestAt(10));
  for (const PropertyList& unit : unitsOf(document)) {
    double used = 0;
    double weighted = 0;
    for (const PropertyList& state : *at(unit, {"dvfm_states"}).array()) {
      used += number(state, {"used_ratio"});
      weighted += number(state, {"used_ratio"}) * number(state, {"freq"});
    }
    const double frequency = number(unit, {"freq_hz"});
    const double megahertz = frequency > 1e6 ? frequency / 1e6 : frequency;
    EXPECT_NEAR(megahertz, weighted / used, 0.1);
  }
}

TEST(PowermetricsDocument, PowersAreEnergiesOverTheElapsedTime) {
  for (double time = 0; time < 100; time += 1) {
    const PropertyList document = parsed(requestAt(time));
    const double seconds = number(document, {"elapsed_ns"}) / 1e9;
    for (const std::string name : {"cpu", "gpu", "ane"}) {
      const double energy = number(document, {"processor", name + "_energy"});
      const double power = number(document, {"processor", name + "_power"});
      EXPECT_NEAR(energy, power * seconds, 0.5) << name;
    }
  }
}

TEST(PowermetricsDocument, CombinedPowerIsTheSumOfTheThree) {
  for (double time = 0; time < 100; time += 1) {
    const PropertyList document = parsed(requestAt(time));
    double sum = 0;
    for (const char* name : {"cpu_power", "gpu_power", "ane_power"}) {
      sum += number(document, {"processor", name});
    }
    EXPECT_NEAR(number(document, {"processor", "combined_power"}), sum, 1e-5 * sum + 1e-3);
  }
}

TEST(PowermetricsDocument, EnergiesGrowWithThePeriod) {
  DocumentRequest shorter = requestAt(10);
  DocumentRequest longer = requestAt(10 + 0.5);
  longer.period = 2000ms;  // the same middle of the sample
  EXPECT_NEAR(number(parsed(longer), {"processor", "cpu_energy"}),
              2 * number(parsed(shorter), {"processor", "cpu_energy"}),
              0.05 * number(parsed(longer), {"processor", "cpu_energy"}));
}

TEST(PowermetricsDocument, EnergiesAreWholeNumbers) {
  EXPECT_NE(textOf(requestAt(10)).find("<key>cpu_energy</key><integer>"), std::string::npos);
  EXPECT_NE(textOf(requestAt(10)).find("<key>ane_energy</key><integer>"), std::string::npos);
}

TEST(PowermetricsDocument, HasNoDramEnergy) {
  EXPECT_EQ(textOf(requestAt(10)).find("dram"), std::string::npos);
}

TEST(PowermetricsDocument, HasOnlyTheSectionsOfItsSamplers) {
  const auto sections = [](const Samplers& samplers) {
    DocumentRequest request = requestAt(10);
    request.samplers = samplers;
    auto keys = keysOf(parsed(request));
    keys.erase(keys.begin(), keys.begin() + 7);
    return keys;
  };
  using Keys = std::vector<std::string>;
  EXPECT_EQ(sections({}), Keys{});
  EXPECT_EQ(sections({.cpuPower = true}), Keys{"processor"});
  EXPECT_EQ(sections({.gpuPower = true}), Keys{"gpu"});
  EXPECT_EQ(sections({.anePower = true}), Keys{});
  EXPECT_EQ(sections({.thermal = true}), Keys{"thermal_pressure"});
  EXPECT_EQ(sections({.cpuPower = true, .gpuPower = true, .anePower = true, .thermal = true}),
            (Keys{"processor", "thermal_pressure", "gpu"}));
}

TEST(PowermetricsDocument, IsTheSameBytesForTheSameArguments) {
  EXPECT_EQ(bytesOf(requestAt(10)), bytesOf(requestAt(10)));
}

TEST(PowermetricsDocument, DiffersFromSecondToSecond) {
  for (double time = 1; time < 100; time += 1) {
    EXPECT_NE(number(parsed(requestAt(time)), {"processor", "combined_power"}),
              number(parsed(requestAt(time + 1)), {"processor", "combined_power"}));
  }
}

TEST(PowermetricsDocument, DiffersFromSeedToSeed) {
  DocumentRequest other = requestAt(10);
  other.seed = 4;
  EXPECT_NE(bytesOf(requestAt(10)), bytesOf(other));
}

TEST(PowermetricsDocument, FiguresDependOnTheTimeSinceTheStartAlone) {
  DocumentRequest later = requestAt(10);
  later.startTime += 1'000'000;
  const auto processor = [](const DocumentRequest& request) {
    const std::string text = textOf(request);
    return text.substr(text.find("<key>processor</key>"));
  };
  EXPECT_EQ(processor(later), processor(requestAt(10)));
}

TEST(Samplers, AreEnabledByName) {
  Samplers samplers;
  EXPECT_TRUE(samplers.enable("gpu_power"));
  EXPECT_TRUE(samplers.gpuPower);
  EXPECT_FALSE(samplers.cpuPower);
}

TEST(Samplers, OfAnotherNameAreRefused) {
  Samplers samplers;
  EXPECT_FALSE(samplers.enable("bandwidth"));
  EXPECT_FALSE(samplers.enable(""));
  EXPECT_FALSE(samplers.enable("cpu_power "));
}

}  // namespace
}  // namespace pallimo::adapters::simulated
