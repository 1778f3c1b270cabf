// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "benchmarks/grown_smc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>

namespace pallimo::benchmarks {
namespace {

std::set<std::string> namesOf(const adapters::simulated::RecordedSmc& smc) {
  std::set<std::string> names;
  for (const auto& key : smc.keys) names.insert(key.key);
  return names;
}

std::ptrdiff_t knownTemperatures(const adapters::simulated::RecordedSmc& smc) {
  return std::count_if(smc.keys.begin(), smc.keys.end(), [](const auto& key) {
    return sensors::isCPUTemperatureKey(key.key) || sensors::isGPUTemperatureKey(key.key);
  });
}

std::ptrdiff_t temperatures(const adapters::simulated::RecordedSmc& smc) {
  return std::count_if(smc.keys.begin(), smc.keys.end(),
                       [](const auto& key) { return key.key.front() == 'T'; });
}

TEST(GrownSmc, HasAsManyKeysAsItIsAskedForWithFourCharactersAndNoneTwice) {
  for (const std::size_t keys : {1, 100, 500, 5000, 10'000}) {
    const auto smc = smcOfKeys(keys);
    EXPECT_EQ(smc.keys.size(), keys);
    EXPECT_EQ(smc.keyCount, keys);
    EXPECT_EQ(namesOf(smc).size(), keys);
    for (const auto& key : smc.keys) EXPECT_EQ(key.key.size(), 4u);
  }
}

TEST(GrownSmc, AQuarterAreTemperaturesThatTheTablesKnowUntilThoseAreUsedUp) {
  EXPECT_EQ(knownTemperatures(smcOfKeys(100)), 25);
  EXPECT_EQ(knownTemperatures(smcOfKeys(313)), 79);
  EXPECT_EQ(knownTemperatures(smcOfKeys(5000)), 79);
}

TEST(GrownSmc, AQuarterAreTemperaturesOfSomethingElse) {
  EXPECT_EQ(temperatures(smcOfKeys(100)) - knownTemperatures(smcOfKeys(100)), 25);
  EXPECT_EQ(temperatures(smcOfKeys(5000)) - knownTemperatures(smcOfKeys(5000)), 1250);
}

}  // namespace
}  // namespace pallimo::benchmarks
