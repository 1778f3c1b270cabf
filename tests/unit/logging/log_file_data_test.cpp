// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_data.h"

#include <limits>

#include "unit/base/comma_locale.h"
#include "unit/base/zone_scope.h"

namespace pallimo::logging {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::system_clock;
using tests::ZoneScope;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A time of the day 2024-03-05 UTC.
system_clock::time_point onTheDay(system_clock::duration timeOfDay) {
  return system_clock::from_time_t(1'709'596'800) + timeOfDay;
}

std::string stampOf(system_clock::time_point time, const char* zone = "UTC0") {
  const ZoneScope scope(zone);
  LogRow row;
  row.time = time;
  return formatRow(row, time).timeStamp;
}

std::string elapsedAfter(system_clock::duration elapsed) {
  LogRow row;
  row.time = onTheDay(hours(12)) + elapsed;
  return formatRow(row, onTheDay(hours(12))).ellapsedTime;
}

/// Every figure differs, so that a swapped column shows.
LogRow distinctRow() {
  LogRow row;
  row.time = onTheDay(hours(14) + minutes(2) + seconds(33) + milliseconds(45));
  row.pkgPower = 3.25;
  row.cpuPower = 4.5;
  row.dramPower = 5.0625;
  row.anePower = 6;
  row.gpuPower = 7.125;
  row.cpuECoreFrequency = 1008;
  row.cpuPCoreFrequency = 3009;
  row.gpuFrequency = 410;
  row.cpuAvgTmp = 52;
  row.cpuMaxTmp = 63;
  row.cpuMinTmp = 41;
  row.gpuAvgTmp = 44;
  row.cpuUtilization = 15.5;
  row.cpuEUtilization = 16.25;
  row.cpuPUtilization = 17.125;
  row.gpuUtilization = 18;
  return row;
}

TEST(LogFileData, TheHeaderReadsExactly) {
  EXPECT_EQ(kCsvHeader,
            "System Time, Elapsed Time (sec), Package Power (Watt), CPU Power (Watt), DRAM Power "
            "(Watt), ANE Power (Watt), GPU Power (Watt), E-Core Frequency (Mhz), P-Core Frequency "
            "(Mhz), GPU Frequency (Mhz), CPU MIN Temperature (C), CPU AVG Temperature (C), CPU MAX "
            "Temperature (C), GPU AVG Temperature (C), CPU Utilization (%), E-Core Utilization "
            "(%), P-Core Utilization (%), GPU Utilization (%)");
}

TEST(LogFileData, ALineHoldsItsColumnsInTheHeadersOrder) {
  const ZoneScope zone("UTC0");
  const LogRow row = distinctRow();
  EXPECT_EQ(csvLine(formatRow(row, row.time - milliseconds(2500))),
            "14:02:33.045, 2.500, 3.250, 4.500, 5.062, 6.000, 7.125, 1008, 3009, 410, 41, 52, 63, "
            "44, 15.500, 16.250, 17.125, 18.000");
}

TEST(LogFileData, ALineJoinsTheFieldsAsTheyAre) {
  const LogFileData data = {"1",  "2",  "3",  "4",  "5",  "6",  "7",  "8",  "9",
                            "10", "12", "13", "11", "14", "15", "16", "17", "18"};
  EXPECT_EQ(csvLine(data), "1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18");
}

TEST(LogFileData, EmptyFieldsKeepTheirSeparators) {
  EXPECT_EQ(csvLine(LogFileData{}), ", , , , , , , , , , , , , , , , , ");
}

TEST(LogFileData, TheRecordKeepsTheTemperaturesAsAverageMaximumMinimum) {
  const auto& [timeStamp, ellapsedTime, pkg, cpu, dram, ane, gpu, eCore, pCore, gpuFrequency,
               eleventh, twelfth, thirteenth, gpuAvg, u1, u2, u3, u4] =
      formatRow(distinctRow(), distinctRow().time);
  EXPECT_EQ(eleventh, "52");
  EXPECT_EQ(twelfth, "63");
  EXPECT_EQ(thirteenth, "41");
}

TEST(LogFileData, TheRowsTimeIsATimeOfDayWithMilliseconds) {
  EXPECT_EQ(stampOf(onTheDay(hours(14) + minutes(2) + seconds(33) + milliseconds(45))),
            "14:02:33.045");
  EXPECT_EQ(stampOf(onTheDay(hours(0))), "00:00:00.000");
  EXPECT_EQ(stampOf(onTheDay(hours(24) - milliseconds(1))), "23:59:59.999");
}

TEST(LogFileData, MillisecondsCountWhenTheyAreOver) {
  EXPECT_EQ(stampOf(onTheDay(microseconds(999'999))), "00:00:00.999");
  EXPECT_EQ(stampOf(onTheDay(microseconds(1'500))), "00:00:00.001");
}

TEST(LogFileData, MillisecondsCountTheSameWayBefore1970) {
  EXPECT_EQ(stampOf(system_clock::time_point(microseconds(-1))), "23:59:59.999");
  EXPECT_EQ(stampOf(system_clock::time_point(milliseconds(-1500))), "23:59:58.500");
  EXPECT_EQ(stampOf(system_clock::time_point(microseconds(-1'000'001))), "23:59:58.999");
}

TEST(LogFileData, TheRowsTimeIsLocal) {
  const auto noon = onTheDay(hours(12));
  EXPECT_EQ(stampOf(noon, "IST-5:30"), "17:30:00.000");
  EXPECT_EQ(stampOf(noon, "PST+8"), "04:00:00.000");
}

TEST(LogFileData, TheRowsTimeFollowsTheZonesSummerTime) {
  const char* zone = "CET-1CEST,M3.5.0,M10.5.0/3";
  EXPECT_EQ(stampOf(onTheDay(hours(12)), zone), "13:00:00.000");
  EXPECT_EQ(stampOf(onTheDay(hours(12)) + hours(24 * 90), zone), "14:00:00.000");
}

TEST(LogFileData, TheRowsTimeMayBeGivenInstead) {
  const ZoneScope zone("IST-5:30");
  LogRow row;
  row.time = onTheDay(hours(12));
  EXPECT_EQ(formatRow(row, row.time, hours(24) - milliseconds(1)).timeStamp, "23:59:59.999");
  EXPECT_EQ(formatRow(row, row.time, hours(9) + milliseconds(7)).timeStamp, "09:00:00.007");
}

TEST(LogFileData, ALineIsAppendedBehindWhatIsThere) {
  std::string text = "before ";
  appendCsvLine(text, LogFileData{});
  EXPECT_EQ(text, "before " + csvLine(LogFileData{}));
}

TEST(LogFileData, TheFirstRowsElapsedTimeIsNothing) {
  EXPECT_EQ(elapsedAfter(seconds(0)), "0.000");
}

TEST(LogFileData, ElapsedTimeCountsSecondsFromTheFirstRow) {
  EXPECT_EQ(elapsedAfter(milliseconds(1003)), "1.003");
  EXPECT_EQ(elapsedAfter(hours(24)), "86400.000");
}

TEST(LogFileData, ElapsedTimeIsRounded) { EXPECT_EQ(elapsedAfter(microseconds(1'600)), "0.002"); }

TEST(LogFileData, AClockThatWasSetBackGivesANegativeElapsedTime) {
  EXPECT_EQ(elapsedAfter(milliseconds(-2500)), "-2.500");
}

TEST(LogFileData, FrequenciesAndTemperaturesAreWholeNumbers) {
  LogRow row;
  row.cpuECoreFrequency = 1.23456 * 1000;
  row.cpuMinTmp = 41.4;
  row.cpuMaxTmp = 63.6;
  const LogFileData data = formatRow(row, row.time);
  EXPECT_EQ(data.cpuECoreFrequency, "1235");
  EXPECT_EQ(data.cpuMinTmp, "41");
  EXPECT_EQ(data.cpuMaxTmp, "64");
}

TEST(LogFileData, PowersAndUtilisationsHaveThreeDecimals) {
  LogRow row;
  row.pkgPower = 1.23456;
  row.cpuUtilization = 0.5 * 100;
  const LogFileData data = formatRow(row, row.time);
  EXPECT_EQ(data.pkgPower, "1.235");
  EXPECT_EQ(data.cpuUtilization, "50.000");
}

TEST(LogFileData, ARowWithoutFiguresReadsAsZeroes) {
  const ZoneScope zone("UTC0");
  EXPECT_EQ(csvLine(formatRow(LogRow{}, LogRow{}.time)),
            "00:00:00.000, 0.000, 0.000, 0.000, 0.000, 0.000, 0.000, 0, 0, 0, 0, 0, 0, 0, 0.000, "
            "0.000, 0.000, 0.000");
}

TEST(LogFileData, WhatIsNotANumberReadsNanWhateverItsSign) {
  LogRow row;
  row.pkgPower = kNaN;
  row.cpuPower = -kNaN;
  row.gpuFrequency = kNaN;
  const LogFileData data = formatRow(row, row.time);
  EXPECT_EQ(data.pkgPower, "nan");
  EXPECT_EQ(data.cpuPower, "nan");
  EXPECT_EQ(data.gpuFrequency, "nan");
}

TEST(LogFileData, InfinitiesReadInf) {
  LogRow row;
  row.pkgPower = kInfinity;
  row.gpuAvgTmp = -kInfinity;
  const LogFileData data = formatRow(row, row.time);
  EXPECT_EQ(data.pkgPower, "inf");
  EXPECT_EQ(data.gpuAvgTmp, "-inf");
}

TEST(LogFileData, ALineReadsTheSameUnderACommaLocale) {
  const ZoneScope zone("UTC0");
  const LogRow row = distinctRow();
  const std::string line = csvLine(formatRow(row, row.time));
  const tests::CommaLocale comma;
  EXPECT_EQ(csvLine(formatRow(row, row.time)), line);
}

TEST(LogFileData, HugeFiguresAreWrittenOut) {
  LogRow row;
  row.pkgPower = 1e22;
  EXPECT_EQ(formatRow(row, row.time).pkgPower, "10000000000000000000000.000");
}

}  // namespace
}  // namespace pallimo::logging
