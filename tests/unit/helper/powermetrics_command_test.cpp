// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/powermetrics_command.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pallimo::helper {
namespace {

using Texts = std::vector<std::string>;

PowermetricsTool tool() { return {"/usr/bin/powermetrics", true, nullptr}; }

Texts arguments(const PowermetricsTool& tool, double msSampling, bool includeGPU) {
  const auto command = powermetricsCommand(tool, msSampling, includeGPU, 1);
  return command ? command->arguments : Texts{};
}

/// The value of -i, or "refused".
std::string period(double msSampling) {
  const auto command = powermetricsCommand(tool(), msSampling, false, 1);
  return command ? command->arguments.at(3) : "refused";
}

TEST(PowermetricsCommand, TakesOneSampleOfTheProcessors) {
  EXPECT_EQ(arguments(tool(), 1000, false),
            (Texts{"-n", "1", "-i", "1000", "-f", "plist", "--samplers", "cpu_power,ane_power"}));
}

TEST(PowermetricsCommand, AddsTheGpuOnRequest) {
  EXPECT_EQ(arguments(tool(), 1000, true).back(), "cpu_power,gpu_power,ane_power");
}

TEST(PowermetricsCommand, LeavesTheNeuralEngineOutWhereItIsUnknown) {
  auto old = tool();
  old.hasAnePower = false;
  EXPECT_EQ(arguments(old, 1000, false).back(), "cpu_power");
  EXPECT_EQ(arguments(old, 1000, true).back(), "cpu_power,gpu_power");
}

TEST(PowermetricsCommand, RunsTheToolByItsFixedPath) {
  EXPECT_EQ(powermetricsCommand(tool(), 1000, false, 1)->path, "/usr/bin/powermetrics");
}

TEST(PowermetricsCommand, HasAnEnvironmentOfPathAlone) {
  EXPECT_EQ(powermetricsCommand(tool(), 1000, false, 1)->environment,
            (Texts{"PATH=/usr/bin:/bin:/usr/sbin:/sbin"}));
}

TEST(PowermetricsCommand, AddsWhatTheToolNeedsForThisRequest) {
  auto standIn = tool();
  standIn.environment = [](std::uint64_t request) {
    return Texts{"NUMBER=" + std::to_string(request)};
  };
  EXPECT_EQ(powermetricsCommand(standIn, 1000, false, 7)->environment,
            (Texts{"PATH=/usr/bin:/bin:/usr/sbin:/sbin", "NUMBER=7"}));
}

TEST(PowermetricsCommand, RoundsThePeriodToWholeMilliseconds) {
  EXPECT_EQ(period(999.4), "999");
  EXPECT_EQ(period(999.5), "1000");
  EXPECT_EQ(period(1.49), "1");
}

TEST(PowermetricsCommand, AcceptsTheShortestAndTheLongestPeriod) {
  EXPECT_EQ(period(1), "1");
  EXPECT_EQ(period(3'600'000), "3600000");
}

TEST(PowermetricsCommand, RefusesAPeriodOutsideTheLimits) {
  EXPECT_EQ(period(std::nextafter(1, 0)), "refused");
  EXPECT_EQ(period(std::nextafter(3'600'000, 4e6)), "refused");
  EXPECT_EQ(period(0), "refused");
  EXPECT_EQ(period(-1000), "refused");
}

TEST(PowermetricsCommand, RefusesAPeriodThatIsNotFinite) {
  EXPECT_EQ(period(std::numeric_limits<double>::quiet_NaN()), "refused");
  EXPECT_EQ(period(std::numeric_limits<double>::infinity()), "refused");
  EXPECT_EQ(period(-std::numeric_limits<double>::infinity()), "refused");
}

TEST(PowermetricsCommand, MayTakeThirtySecondsLongerThanThePeriod) {
  EXPECT_EQ(powermetricsCommand(tool(), 2500, false, 1)->timeLimit,
            std::chrono::milliseconds(32'500));
}

TEST(PowermetricsCommand, MayPrintSixteenMebibytes) {
  EXPECT_EQ(powermetricsCommand(tool(), 1000, false, 1)->outputLimit, 16'777'216U);
}

}  // namespace
}  // namespace pallimo::helper
