// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/headless_table.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <limits>
#include <string>

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;
using std::chrono::system_clock;

/// 2026-03-05 13:02:33.123 UTC
constexpr system_clock::time_point kTime{1772715753123ms};
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class HeadlessTableTest : public testing::Test {
 protected:
  HeadlessTableTest() {
    setenv("TZ", "CET-1", 1);
    tzset();
  }
  ~HeadlessTableTest() override {
    setenv("TZ", "UTC", 1);
    tzset();
  }

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

TEST_F(HeadlessTableTest, EveryLineHas123Places) {
  for (const std::string& text : {tableHeader(), tableLine(row(), kTime)}) {
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         end = text.find('\n', begin)) {
      EXPECT_EQ(end - begin, 123u) << text;
      begin = end + 1;
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
