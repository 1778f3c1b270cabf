// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/headless/headless_format.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

#include "unit/base/zone_scope.h"

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;
using std::chrono::system_clock;

/// 2026-03-05 13:02:33.123 UTC
constexpr system_clock::time_point kTime{1772715753123ms};

class HeadlessFormatTest : public testing::Test {
 protected:
  /// A row with 17 different values.
  static logging::LogRow row(system_clock::time_point time = kTime) {
    logging::LogRow row;
    row.time = time;
    row.pkgPower = 12.3456;
    row.cpuPower = 8.25;
    row.dramPower = 0.5;
    row.anePower = 0.125;
    row.gpuPower = 3.0625;
    row.cpuECoreFrequency = 1234.5678;
    row.cpuPCoreFrequency = 3204;
    row.gpuFrequency = 444.25;
    row.cpuAvgTmp = 45.5;
    row.cpuMaxTmp = 60.25;
    row.cpuMinTmp = 38.75;
    row.gpuAvgTmp = 41.5;
    row.cpuUtilization = 10.5;
    row.cpuEUtilization = 20.25;
    row.cpuPUtilization = 30.125;
    row.gpuUtilization = 40.0625;
    return row;
  }

 private:
  const tests::ZoneScope zone_{"CET-1"};
};

TEST_F(HeadlessFormatTest, CsvBeginsWithTheLogsHeader) {
  EXPECT_EQ(makeHeadlessFormat(OutputFormat::csv)->format({row()}),
            "System Time, Elapsed Time (sec), Package Power (Watt), CPU Power (Watt), "
            "DRAM Power (Watt), ANE Power (Watt), GPU Power (Watt), E-Core Frequency (Mhz), "
            "P-Core Frequency (Mhz), GPU Frequency (Mhz), CPU MIN Temperature (C), "
            "CPU AVG Temperature (C), CPU MAX Temperature (C), GPU AVG Temperature (C), "
            "CPU Utilization (%), E-Core Utilization (%), P-Core Utilization (%), "
            "GPU Utilization (%)\n"
            "14:02:33.123, 0.000, 12.346, 8.250, 0.500, 0.125, 3.062, 1235, 3204, 444, 39, 46, 60, "
            "42, 10.500, 20.250, 30.125, 40.062\n");
}

TEST_F(HeadlessFormatTest, CsvWritesItsHeaderOnceAndCountsFromTheFirstRow) {
  const auto csv = makeHeadlessFormat(OutputFormat::csv);
  csv->format({row()});
  EXPECT_EQ(csv->format({row(kTime + 1500ms)}).substr(0, 30), "14:02:34.623, 1.500, 12.346, 8");
}

TEST_F(HeadlessFormatTest, JsonIsOneObjectALineWithTheRecordsKeysInTheirOrder) {
  EXPECT_EQ(makeHeadlessFormat(OutputFormat::json)->format({row()}),
            R"({"timeStamp":"2026-03-05T14:02:33.123+01:00","ellapsedTime":0.0,)"
            R"("pkgPower":12.3456,"cpuPower":8.25,"dramPower":0.5,"anePower":0.125,)"
            R"("gpuPower":3.0625,"cpuECoreFrequency":1234.5678,"cpuPCoreFrequency":3204.0,)"
            R"("gpuFrequency":444.25,"cpuAvgTmp":45.5,"cpuMaxTmp":60.25,"cpuMinTmp":38.75,)"
            R"("gpuAvgTmp":41.5,"cpuUtilization":10.5,"cpuEUtilization":20.25,)"
            R"("cpuPUtilization":30.125,"gpuUtilization":40.0625,"clusters":[]})"
            "\n");
}

TEST_F(HeadlessFormatTest, JsonCountsFromTheFirstRow) {
  const auto json = makeHeadlessFormat(OutputFormat::json);
  json->format({row()});
  EXPECT_NE(json->format({row(kTime + 1500ms)}).find(R"("ellapsedTime":1.5,)"), std::string::npos);
}

TEST_F(HeadlessFormatTest, JsonNumbersAreNotRounded) {
  logging::LogRow precise = row();
  precise.pkgPower = 0.1 + 0.2;
  EXPECT_NE(jsonLine({precise}, kTime).find(R"("pkgPower":0.30000000000000004,)"),
            std::string::npos);
}

TEST_F(HeadlessFormatTest, JsonWritesNullForWhatIsNotFinite) {
  logging::LogRow odd = row();
  odd.pkgPower = std::numeric_limits<double>::quiet_NaN();
  odd.cpuPower = std::numeric_limits<double>::infinity();
  odd.dramPower = -std::numeric_limits<double>::infinity();
  EXPECT_NE(jsonLine({odd}, kTime).find(R"("pkgPower":null,"cpuPower":null,"dramPower":null,)"),
            std::string::npos);
}

TEST_F(HeadlessFormatTest, JsonListsTheClustersInTheirOrder) {
  HeadlessSample sample = {row()};
  sample.clusters = {{"M-Cluster", 1020.25, {4, 5}}, {std::nullopt, std::nullopt, {}}};
  EXPECT_TRUE(jsonLine(sample, kTime)
                  .ends_with(R"("clusters":[{"name":"M-Cluster","frequency":1020.25,"cpus":[4,5]},)"
                             R"({"name":null,"frequency":null,"cpus":[]}]})"));
}

TEST_F(HeadlessFormatTest, JsonWritesNullForAFrequencyThatIsNotFinite) {
  HeadlessSample sample = {row()};
  sample.clusters = {{"A", std::numeric_limits<double>::infinity(), {}}};
  EXPECT_NE(jsonLine(sample, kTime).find(R"("frequency":null)"), std::string::npos);
}

TEST_F(HeadlessFormatTest, JsonStaysALineOfUtf8WhateverAClusterIsCalled) {
  HeadlessSample sample = {row()};
  sample.clusters = {{"a\n\"\xff", 1.0, {}}};
  EXPECT_NE(jsonLine(sample, kTime).find("\"name\":\"a\\n\\\"\xEF\xBF\xBD\""), std::string::npos);
}

TEST_F(HeadlessFormatTest, OnlyJsonPrintsClusters) {
  EXPECT_TRUE(printsClusters(OutputFormat::json));
  EXPECT_FALSE(printsClusters(OutputFormat::csv));
  EXPECT_FALSE(printsClusters(OutputFormat::table));
}

TEST_F(HeadlessFormatTest, IsoTimeCarriesTheZonesOffset) {
  EXPECT_EQ(isoTime(kTime), "2026-03-05T14:02:33.123+01:00");
  const tests::ZoneScope zone("UTC");
  EXPECT_EQ(isoTime(kTime), "2026-03-05T13:02:33.123+00:00");
  const tests::ZoneScope west("XST3:30");
  EXPECT_EQ(isoTime(kTime), "2026-03-05T09:32:33.123-03:30");
}

TEST_F(HeadlessFormatTest, IsoTimeCutsMillisecondsAlsoBefore1970) {
  const tests::ZoneScope zone("UTC");
  EXPECT_EQ(isoTime(kTime + 999us), "2026-03-05T13:02:33.123+00:00");
  EXPECT_EQ(isoTime(system_clock::time_point(-1ms)), "1969-12-31T23:59:59.999+00:00");
}

TEST_F(HeadlessFormatTest, TheTableBeginsWithItsHeaderAndRepeatsItEveryTwentyRows) {
  const auto table = makeHeadlessFormat(OutputFormat::table);
  std::string headersBefore;
  for (int number = 1; number <= 41; ++number) {
    const std::string text = table->format({row()});
    if (text.find("Power (W)") != std::string::npos) headersBefore += std::to_string(number) + " ";
  }
  EXPECT_EQ(headersBefore, "1 21 41 ");
}

}  // namespace
}  // namespace pallimo::app
