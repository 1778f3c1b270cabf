// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "sensors/temperature_tables.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pallimo::sensors {
namespace {

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> found;
  for (std::string word; stream >> word;) found.push_back(word);
  return found;
}

template <std::size_t Size>
std::vector<std::string> namesOf(const std::array<TemperatureSensor, Size>& table) {
  std::vector<std::string> names;
  for (const TemperatureSensor& sensor : table) names.emplace_back(sensor.name);
  return names;
}

/// The labels, each with how many entries in a row bear it.
template <std::size_t Size>
std::vector<std::pair<std::string, int>> labelsOf(
    const std::array<TemperatureSensor, Size>& table) {
  std::vector<std::pair<std::string, int>> labels;
  for (const TemperatureSensor& sensor : table) {
    if (labels.empty() || labels.back().first != sensor.label) labels.emplace_back(sensor.label, 0);
    ++labels.back().second;
  }
  return labels;
}

using Labels = std::vector<std::pair<std::string, int>>;

const std::vector<std::string> kCPUKeys = words(
    "Te05 Te0H Te0L Te0S Tp09 Tp0T Tp17 Tp1h "
    "Tp01 Tp05 Tp0D Tp0H Tp0L Tp0P Tp0X Tp0b Tp0f Tp0j Tp0n Tp0r Tp0v Tp13 Tp1F Tp1J Tp1R Tp1j "
    "Tp1n Tp1p Tp1t Tp1w Tp1z Tp22 Tp25 Tp28 Tp2B Tp2E Tp2J Tp2M Tp2Q Tp2T Tp2W Tp2g Tp2k Tp2s "
    "Tp30 Tp34 Tp3C");

const std::vector<std::string> kGPUKeys = words(
    "Tg05 Tg0D Tg0L Tg0T Tg0b Tg0f Tg0j Tg0r Tg0z Tg17 Tg1F Tg1N Tg1V Tg1d Tg1l Tg1t Tg22 Tg2A "
    "Tg2I Tg2Q Tg2Y Tg2g Tg2o Tg2w Tg34 Tg3C Tg3K Tg3S Tg3a Tg3i Tg3q Tg3y");

const std::vector<std::string> kHIDCPUSensors = words(
    "Tp0i Tp1i Tp2i Tp3i Tp4i Tp5i Tp6i Tp7i Tp8i Tpai Tpbi Tpci Tpdi Tpei Tpfi "
    "Te0i Te1i Te2i Te3i Te4i Te5i Te6i Te7i Te8i Te9i Teai Tebi Teci Tedi Teei Tefi");

const std::vector<std::string> kHIDGPUSensors =
    words("Tg0i Tg1i Tg2i Tg3i Tg4i Tg5i Tg6i Tg7i Tg8i Tg9i Tgai Tgbi Tgci Tgdi Tgei Tgfi");

/// Exactly the listed ones of all names that might be meant: those of every table, and every
/// "T", letter, two characters.
void expectOnly(bool (*holds)(std::string_view), const std::vector<std::string>& listed) {
  const std::set<std::string> expected(listed.begin(), listed.end());
  const std::string characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  for (const char kind : characters) {
    for (const char third : characters) {
      for (const char fourth : characters) {
        const std::string name = {'T', kind, third, fourth};
        EXPECT_EQ(holds(name), expected.count(name) == 1) << name;
      }
    }
  }
}

TEST(TemperatureTables, HoldTheCPUKeysInOrder) {
  EXPECT_EQ(kCPUTemperatureKeyTable.size(), 47u);
  EXPECT_EQ(namesOf(kCPUTemperatureKeyTable), kCPUKeys);
}

TEST(TemperatureTables, LabelTheCPUKeys) {
  EXPECT_EQ(labelsOf(kCPUTemperatureKeyTable), (Labels{{"Core Efficiency 1", 1},
                                                       {"Core Efficiency 2", 2},
                                                       {"Core Efficiency 3", 1},
                                                       {"Core Efficiency 4", 1},
                                                       {"Core Efficiency 5", 1},
                                                       {"Core Efficiency 6", 1},
                                                       {"Core Efficiency 7", 1},
                                                       {"Core Performance", 39}}));
}

TEST(TemperatureTables, HoldTheGPUKeysInOrder) {
  EXPECT_EQ(kGPUTemperatureKeyTable.size(), 32u);
  EXPECT_EQ(namesOf(kGPUTemperatureKeyTable), kGPUKeys);
}

TEST(TemperatureTables, LabelTheGPUKeys) {
  EXPECT_EQ(labelsOf(kGPUTemperatureKeyTable), (Labels{{"GPU", 32}}));
}

TEST(TemperatureTables, HoldTheHIDCPUSensorsInOrder) {
  EXPECT_EQ(kHIDCPUSensorTable.size(), 31u);
  EXPECT_EQ(namesOf(kHIDCPUSensorTable), kHIDCPUSensors);
}

TEST(TemperatureTables, LabelTheHIDCPUSensors) {
  EXPECT_EQ(labelsOf(kHIDCPUSensorTable),
            (Labels{{"Core Performance", 15}, {"Core Efficiency", 16}}));
}

TEST(TemperatureTables, HoldTheHIDGPUSensorsInOrder) {
  EXPECT_EQ(kHIDGPUSensorTable.size(), 16u);
  EXPECT_EQ(namesOf(kHIDGPUSensorTable), kHIDGPUSensors);
}

TEST(TemperatureTables, LabelTheHIDGPUSensors) {
  EXPECT_EQ(labelsOf(kHIDGPUSensorTable), (Labels{{"GPU", 16}}));
}

TEST(TemperatureTables, FindExactlyTheCPUKeys) { expectOnly(isCPUTemperatureKey, kCPUKeys); }

TEST(TemperatureTables, FindExactlyTheGPUKeys) { expectOnly(isGPUTemperatureKey, kGPUKeys); }

TEST(TemperatureTables, FindExactlyTheHIDCPUSensors) { expectOnly(isHIDCPUSensor, kHIDCPUSensors); }

TEST(TemperatureTables, FindExactlyTheHIDGPUSensors) { expectOnly(isHIDGPUSensor, kHIDGPUSensors); }

TEST(TemperatureTables, LeaveOutTp9i) { EXPECT_FALSE(isHIDCPUSensor("Tp9i")); }

TEST(TemperatureTables, TellUpperFromLowerCase) {
  EXPECT_TRUE(isCPUTemperatureKey("Te0H"));
  EXPECT_FALSE(isCPUTemperatureKey("Te0h"));
  EXPECT_FALSE(isCPUTemperatureKey("te0H"));
  EXPECT_FALSE(isGPUTemperatureKey("TG05"));
  EXPECT_FALSE(isHIDCPUSensor("Tp0I"));
  EXPECT_FALSE(isHIDGPUSensor("tg0i"));
}

TEST(TemperatureTables, FindNoNameOfAnotherLength) {
  for (const auto holds :
       {isCPUTemperatureKey, isGPUTemperatureKey, isHIDCPUSensor, isHIDGPUSensor}) {
    for (const char* name : {"", "T", "Te0", "Te05 ", "xTg05", "Tp0i0", "Tg0"}) {
      EXPECT_FALSE(holds(name)) << name;
    }
  }
}

}  // namespace
}  // namespace pallimo::sensors
