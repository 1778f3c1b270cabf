// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "tools/powermetrics/powermetrics_arguments.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pallimo::tools::powermetrics {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

Arguments accepted(const Words& words) {
  const auto parsed = parseArguments(words);
  const auto* arguments = std::get_if<Arguments>(&parsed);
  if (arguments == nullptr) {
    ADD_FAILURE() << "refused";
    return {};
  }
  return *arguments;
}

bool isRefused(const Words& words) {
  return std::holds_alternative<UsageError>(parseArguments(words));
}

/// The helper's own way, with other words at its end.
bool isRefusedWith(const Words& more) {
  Words words{"-n", "1", "-f", "plist", "--samplers", "cpu_power"};
  words.insert(words.end(), more.begin(), more.end());
  return isRefused(words);
}

TEST(PowermetricsArguments, TakesTheHelpersWayOfCalling) {
  const Arguments arguments =
      accepted({"-n", "1", "-i", "750", "-f", "plist", "--samplers", "cpu_power,gpu_power"});
  EXPECT_EQ(arguments.period, 750ms);
  EXPECT_EQ(arguments.samplers, (Words{"cpu_power", "gpu_power"}));
}

TEST(PowermetricsArguments, TakesTheLongNames) {
  const Arguments arguments = accepted({"--sample-count", "1", "--sample-rate", "750", "--format",
                                        "plist", "--samplers", "ane_power"});
  EXPECT_EQ(arguments.period, 750ms);
  EXPECT_EQ(arguments.samplers, Words{"ane_power"});
}

TEST(PowermetricsArguments, TakesTheValueOfALongNameAfterAnEqualsSign) {
  const Arguments arguments =
      accepted({"--sample-count=1", "--sample-rate=750", "--format=plist", "--samplers=cpu_power"});
  EXPECT_EQ(arguments.period, 750ms);
}

TEST(PowermetricsArguments, TakesTheShortNameOfSamplersInAnyOrder) {
  EXPECT_EQ(accepted({"-s", "cpu_power", "-f", "plist", "-n", "1"}).samplers, Words{"cpu_power"});
}

TEST(PowermetricsArguments, SamplesFiveSecondsUnlessTold) {
  EXPECT_EQ(accepted({"-n", "1", "-f", "plist", "-s", "cpu_power"}).period, 5000ms);
}

TEST(PowermetricsArguments, LeavesSamplerNamesToTheMachine) {
  EXPECT_EQ(accepted({"-n", "1", "-f", "plist", "-s", "x,cpu_power,x"}).samplers,
            (Words{"x", "cpu_power", "x"}));
}

TEST(PowermetricsArguments, TakesPeriodsFromAMillisecondToADay) {
  EXPECT_FALSE(isRefusedWith({"-i", "1"}));
  EXPECT_FALSE(isRefusedWith({"-i", "86400000"}));
  for (const char* period :
       {"0", "-1", "86400001", "1.5", "", "1s", " 1", "+1", "0x10", "99999999999999999999"}) {
    EXPECT_TRUE(isRefusedWith({"-i", period})) << period;
  }
}

TEST(PowermetricsArguments, RefusesMoreOrLessThanOneSample) {
  for (const char* count : {"0", "2", "-1", "", "01"}) {
    EXPECT_TRUE(isRefused({"-n", count, "-f", "plist", "-s", "cpu_power"})) << count;
  }
  EXPECT_TRUE(isRefused({"-f", "plist", "-s", "cpu_power"}));
}

TEST(PowermetricsArguments, RefusesAnotherFormat) {
  EXPECT_TRUE(isRefused({"-n", "1", "-f", "text", "-s", "cpu_power"}));
  EXPECT_TRUE(isRefused({"-n", "1", "-s", "cpu_power"}));
}

TEST(PowermetricsArguments, RefusesAnEmptySamplerName) {
  for (const char* samplers : {"", ",", "cpu_power,", ",cpu_power", "a,,b"}) {
    EXPECT_TRUE(isRefused({"-n", "1", "-f", "plist", "-s", samplers})) << samplers;
  }
  EXPECT_TRUE(isRefused({"-n", "1", "-f", "plist"}));
}

TEST(PowermetricsArguments, RefusesAnythingElse) {
  EXPECT_TRUE(isRefused({}));
  EXPECT_TRUE(isRefusedWith({"--help"}));
  EXPECT_TRUE(isRefusedWith({"-o", "/tmp/x"}));
  EXPECT_TRUE(isRefusedWith({"more"}));
  EXPECT_TRUE(isRefusedWith({""}));
  EXPECT_TRUE(isRefusedWith({"-i100"}));
  EXPECT_TRUE(isRefusedWith({"-i=100"}));
}

TEST(PowermetricsArguments, RefusesAnOptionWithoutItsValue) { EXPECT_TRUE(isRefusedWith({"-i"})); }

TEST(PowermetricsArguments, RefusesAnOptionThatStandsTwice) {
  EXPECT_TRUE(isRefusedWith({"-n", "1"}));
  EXPECT_TRUE(isRefusedWith({"--sample-count=1"}));
}

}  // namespace
}  // namespace pallimo::tools::powermetrics
