// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/headless/headless_table.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "unit/base/zone_scope.h"

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;
using std::chrono::system_clock;

/// 2026-03-05 13:02:33.123 UTC
constexpr system_clock::time_point kTime{1772715753123ms};
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class HeadlessTableTest : public testing::Test {
 protected:
  static logging::LogRow row() {
    logging::LogRow row;
    row.time = kTime + 61500ms;
    row.pkgPower = 12.3456;
    row.cpuPower = 8.25;
    row.dramPower = 0.5;
    row.anePower = 0.125;
    row.gpuPower = 3.0625;
    row.cpuECoreFrequency = 1234.5678;
    row.cpuPCoreFrequency = 3204;
    row.gpuFrequency = 444.25;
    row.cpuMinTmp = 41.2;
    row.cpuAvgTmp = 52.3;
    row.cpuMaxTmp = 63.6;
    row.gpuAvgTmp = 44;
    row.cpuUtilization = 15.52;
    row.cpuEUtilization = 16.25;
    row.cpuPUtilization = 7.1;
    row.gpuUtilization = 18;
    return row;
  }

  /// A row whose figures are all the same.
  static logging::LogRow rowOf(double figure) {
    logging::LogRow row;
    row.time = kTime;
    for (const auto field :
         {&logging::LogRow::pkgPower, &logging::LogRow::cpuPower, &logging::LogRow::dramPower,
          &logging::LogRow::anePower, &logging::LogRow::gpuPower,
          &logging::LogRow::cpuECoreFrequency, &logging::LogRow::cpuPCoreFrequency,
          &logging::LogRow::gpuFrequency, &logging::LogRow::cpuMinTmp, &logging::LogRow::cpuAvgTmp,
          &logging::LogRow::cpuMaxTmp, &logging::LogRow::gpuAvgTmp,
          &logging::LogRow::cpuUtilization, &logging::LogRow::cpuEUtilization,
          &logging::LogRow::cpuPUtilization, &logging::LogRow::gpuUtilization}) {
      row.*field = figure;
    }
    return row;
  }

  static std::vector<std::size_t> widthsOfLines(const std::string& text) {
    std::vector<std::size_t> widths;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) widths.push_back(line.size());
    return widths;
  }

 private:
  const tests::ZoneScope zone_{"CET-1"};
};

TEST_F(HeadlessTableTest, TwoHeaderLinesOverAlignedFigures) {
  EXPECT_EQ(tableHeader() + tableLine(row(), kTime),
            "                    Power (W) -------------------------   Frequency (MHz) ---"
            "   Temp. (C) -----   Utilisation (%) ---------\n"
            "    time      sec   package    CPU    GPU    ANE   DRAM   E-core P-core   GPU"
            "   min avg max GPU     CPU E-core P-core   GPU\n"
            "14:03:34     61.5     12.35   8.25   3.06   0.12   0.50     1235   3204   444"
            "    41  52  64  44    15.5   16.2    7.1  18.0\n");
}

TEST_F(HeadlessTableTest, EveryLineHas123PlacesAlsoOfExtremeFigures) {
  EXPECT_EQ(widthsOfLines(tableHeader()), (std::vector<std::size_t>{123, 123}));
  for (const double figure :
       {0.0, -0.0, -0.004, -1.0, -99.4, 100.0, 999.4, kNaN, kInfinity, -kInfinity}) {
    for (const auto elapsed : {0h, 27h, -24h}) {
      const std::string line = tableLine(rowOf(figure), kTime - elapsed);
      EXPECT_EQ(widthsOfLines(line), std::vector<std::size_t>{123}) << line;
    }
  }
}

TEST_F(HeadlessTableTest, FiguresOfAnySizeKeepTheirColumns) {
  logging::LogRow large = row();
  large.time = kTime + 24h;
  large.pkgPower = 999.999;
  large.cpuPower = -0.004;
  large.cpuPCoreFrequency = kNaN;
  large.gpuFrequency = 0;
  large.cpuMinTmp = -1;
  large.cpuAvgTmp = 99.6;
  large.cpuMaxTmp = 110;
  large.gpuAvgTmp = -0.3;
  large.cpuUtilization = 100;
  large.cpuEUtilization = 0;
  large.cpuPUtilization = 99.96;
  large.gpuUtilization = -0.01;
  EXPECT_EQ(tableLine(large, kTime),
            "14:02:33  86400.0   1000.00  -0.00   3.06   0.12   0.50     1235    nan     0"
            "    -1 100 110  -0   100.0    0.0  100.0  -0.0\n");
}

TEST_F(HeadlessTableTest, NotANumberIsWrittenInItsPlace) {
  logging::LogRow unknown = row();
  for (const auto figure : {&logging::LogRow::cpuMinTmp, &logging::LogRow::cpuAvgTmp,
                            &logging::LogRow::cpuMaxTmp, &logging::LogRow::gpuAvgTmp,
                            &logging::LogRow::cpuUtilization, &logging::LogRow::cpuEUtilization,
                            &logging::LogRow::cpuPUtilization, &logging::LogRow::gpuUtilization}) {
    unknown.*figure = kNaN;
  }
  EXPECT_EQ(tableLine(unknown, kTime),
            "14:03:34     61.5     12.35   8.25   3.06   0.12   0.50     1235   3204   444"
            "   nan nan nan nan     nan    nan    nan   nan\n");
}

}  // namespace
}  // namespace pallimo::app
