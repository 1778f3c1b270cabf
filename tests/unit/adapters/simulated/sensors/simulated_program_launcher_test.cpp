// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/simulated_program_launcher.h"

#include <gtest/gtest.h>

namespace pallimo::adapters::simulated {
namespace {

constexpr const char* kProfiler = "/usr/sbin/system_profiler";
const base::Bytes kReport{'<', 'x', '>'};

/// Runs a program on a machine that has a report on "SPDisplaysDataType" and an empty one on
/// "SPEmptyDataType".
std::optional<base::Bytes> run(const std::string& path, const std::vector<std::string>& arguments) {
  SimulatedProgramLauncher launcher([](const std::string& type) -> std::optional<base::Bytes> {
    if (type == "SPDisplaysDataType") return kReport;
    if (type == "SPEmptyDataType") return base::Bytes{};
    return std::nullopt;
  });
  return launcher.run(path, arguments);
}

TEST(SimulatedProgramLauncher, PrintsTheReportThatIsAskedFor) {
  EXPECT_EQ(run(kProfiler, {"-xml", "SPDisplaysDataType"}), kReport);
}

TEST(SimulatedProgramLauncher, MayPrintNothing) {
  EXPECT_EQ(run(kProfiler, {"-xml", "SPEmptyDataType"}), base::Bytes{});
}

TEST(SimulatedProgramLauncher, CannotStartTheProfilerForAReportThatIsNotThere) {
  EXPECT_EQ(run(kProfiler, {"-xml", "SPHardwareDataType"}), std::nullopt);
}

TEST(SimulatedProgramLauncher, CannotStartTheProfilerWithOtherArguments) {
  EXPECT_EQ(run(kProfiler, {}), std::nullopt);
  EXPECT_EQ(run(kProfiler, {"SPDisplaysDataType"}), std::nullopt);
  EXPECT_EQ(run(kProfiler, {"-json", "SPDisplaysDataType"}), std::nullopt);
  EXPECT_EQ(run(kProfiler, {"SPDisplaysDataType", "-xml"}), std::nullopt);
  EXPECT_EQ(run(kProfiler, {"-xml", "SPDisplaysDataType", "SPDisplaysDataType"}), std::nullopt);
}

TEST(SimulatedProgramLauncher, KnowsNoOtherProgram) {
  EXPECT_EQ(run("system_profiler", {"-xml", "SPDisplaysDataType"}), std::nullopt);
  EXPECT_EQ(run("/usr/bin/true", {"-xml", "SPDisplaysDataType"}), std::nullopt);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
