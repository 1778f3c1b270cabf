// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_text.h"

#include <algorithm>
#include <limits>

#include "logging/log_file_data.h"
#include "unit/base/comma_locale.h"
#include "unit/base/zone_scope.h"
#include "unit/logging/log_reader.h"

namespace pallimo::logging {
namespace {

using namespace std::chrono_literals;
using std::chrono::system_clock;

constexpr system_clock::time_point kStart{1'709'647'353'045ms};  // 2024-03-05 14:02:33.045 UTC
constexpr base::TimeOfDay kStartOfDay = 14h + 2min + 33s + 45ms;

/// Figures that differ from each other and from row to row.
LogRow rowAfter(int seconds) {
  LogRow row;
  row.time = kStart + std::chrono::seconds(seconds);
  double figure = 10 + seconds;
  for (double* field :
       {&row.pkgPower, &row.cpuPower, &row.dramPower, &row.anePower, &row.gpuPower,
        &row.cpuECoreFrequency, &row.cpuPCoreFrequency, &row.gpuFrequency, &row.cpuMinTmp,
        &row.cpuAvgTmp, &row.cpuMaxTmp, &row.gpuAvgTmp, &row.cpuUtilization, &row.cpuEUtilization,
        &row.cpuPUtilization, &row.gpuUtilization}) {
    *field = figure += 1.375;
  }
  return row;
}

LogRows rowsOf(int seconds) {
  LogRows rows;
  for (int second = 0; second < seconds; ++second) {
    rows.append(rowAfter(second), kStartOfDay + std::chrono::seconds(second));
  }
  return rows;
}

std::vector<std::string> piecesOf(const LogRows& rows) {
  std::vector<std::string> pieces;
  const auto first = rows.size() == 0 ? kStart : rows[0].row.time;
  writeLogFileText(rows, first, [&pieces](std::string_view piece) { pieces.emplace_back(piece); });
  return pieces;
}

std::string textOf(const LogRows& rows) {
  std::string text;
  for (const std::string& piece : piecesOf(rows)) text += piece;
  return text;
}

TEST(LogFileText, IsTheHeaderAloneWithoutRows) {
  EXPECT_EQ(textOf({}), std::string(kCsvHeader) + "\n");
}

TEST(LogFileText, EndsEveryLineWithALineFeed) {
  const std::string text = textOf(rowsOf(2));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
  EXPECT_EQ(text.back(), '\n');
  EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(LogFileText, IsWhatAHeadlessRunPrintsByteForByte) {
  const tests::ZoneScope zone("UTC0");
  std::string printed = std::string(kCsvHeader) + "\n";
  for (int second = 0; second < 50; ++second) {
    printed += csvLine(formatRow(rowAfter(second), kStart)) + "\n";
  }
  EXPECT_EQ(textOf(rowsOf(50)), printed);
}

TEST(LogFileText, ReadsBackColumnByColumn) {
  const tests::LogReader log(textOf(rowsOf(100)));
  ASSERT_EQ(log.rows(), 100u);
  ASSERT_EQ(log.header().size(), 18u);
  for (std::size_t second = 0; second < log.rows(); ++second) {
    double figure = 10 + static_cast<double>(second);
    for (std::size_t column = 2; column < 18; ++column) {
      const bool isWhole = column >= 7 && column <= 13;
      figure += 1.375;
      EXPECT_NEAR(log.number(second, column), figure, isWhole ? 0.5 : 0.0005) << column;
    }
  }
}

TEST(LogFileText, ElapsedTimesCountFromTheFirstRow) {
  LogRows rows;
  for (const auto after : {0ms, 1003ms, 2500ms, -1000ms}) {
    LogRow row;
    row.time = kStart + after;
    rows.append(row, {});
  }
  EXPECT_EQ(tests::LogReader(textOf(rows)).column(1),
            (std::vector<std::string>{"0.000", "1.003", "2.500", "-1.000"}));
}

TEST(LogFileText, ShowsTheTimeOfDayAtWhichARowWasAppended) {
  const tests::ZoneScope zone("IST-5:30");
  LogRows rows;
  rows.append(rowAfter(0), kStartOfDay);
  EXPECT_EQ(tests::LogReader(textOf(rows)).cell(0, 0), "14:02:33.045");
}

TEST(LogFileText, WhatIsNotANumberReadsNan) {
  LogRow row;
  row.cpuAvgTmp = -std::numeric_limits<double>::quiet_NaN();
  row.cpuUtilization = std::numeric_limits<double>::quiet_NaN();
  LogRows rows;
  rows.append(row, {});
  const tests::LogReader log(textOf(rows));
  EXPECT_EQ(log.cell(0, 11), "nan");
  EXPECT_EQ(log.cell(0, 14), "nan");
}

TEST(LogFileText, ReadsTheSameUnderACommaLocale) {
  const std::string text = textOf(rowsOf(3));
  const tests::CommaLocale comma;
  EXPECT_EQ(textOf(rowsOf(3)), text);
}

TEST(LogFileText, ComesInPiecesHoweverLongItIs) {
  const auto pieces = piecesOf(rowsOf(3600));
  EXPECT_GT(pieces.size(), 5u);
  for (const std::string& piece : pieces) {
    EXPECT_LE(piece.size(), 66u * 1024);
    EXPECT_FALSE(piece.empty());
  }
}

TEST(LogFileText, ALongLogHasEveryRowOnce) {
  const tests::LogReader log(textOf(rowsOf(5000)));
  ASSERT_EQ(log.rows(), 5000u);
  for (std::size_t second = 0; second < log.rows(); ++second) {
    ASSERT_EQ(log.cell(second, 1), std::to_string(second) + ".000");
  }
}

}  // namespace
}  // namespace pallimo::logging
