// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "scenarios/whole_program.h"

namespace pallimo::scenarios {
namespace {

/// What a reader of comma-separated files makes of one: lines of fields.
std::vector<std::vector<std::string>> readCsv(const std::string& text) {
  std::vector<std::vector<std::string>> lines;
  std::vector<std::string> fields(1);
  for (const char c : text) {
    if (c == '\n') {
      lines.push_back(std::exchange(fields, std::vector<std::string>(1)));
    } else if (c == ',') {
      fields.emplace_back();
    } else if (c != ' ' || !fields.back().empty()) {  // blanks behind a comma belong to it
      fields.back() += c;
    }
  }
  return lines;
}

/// The whole program while the user logs.
class LoggingTest : public WholeProgram {
 protected:
  void log(bool isOn) {
    general().logfileModel()->setLogEnabled(isOn);
    queue().run();
  }

  /// The one file that was written; its path first.
  std::pair<std::string, std::string> file() const {
    const auto files = platform_.desktop.files.files();
    if (files.size() != 1) return {};
    return *files.begin();
  }

  Lines notices() const { return platform_.desktop.userNotifications.texts(); }
};

TEST_F(LoggingTest, TheFileIsWhatTheCsvRunPrints) {
  startWithUsableHelper();
  log(true);
  sampleFor(5);
  log(false);
  EXPECT_EQ(file().second, output_.text);
}

TEST_F(LoggingTest, ALogHasTheFiguresOfTheSamplesColumnByColumn) {
  startWithUsableHelper();
  log(true);
  for (int second = 0; second < 3; ++second) {
    SampleDocument sample;
    sample.combinedPower = 1000 + 500 * second;
    sample.efficiencyHz = 1.0e9 + 1.0e8 * second;
    sample.performanceHz = 2.0e9 + 1.0e8 * second;
    helperSends(sample);
    queue().advance(1s);
    platform_.clock.set(platform_.clock.now() + 1s);
  }
  log(false);
  const auto lines = readCsv(file().second);
  ASSERT_EQ(lines.size(), 4u);
  for (const auto& line : lines) EXPECT_EQ(line.size(), 18u);
  EXPECT_EQ(lines[0][2], "Package Power (Watt)");
  EXPECT_EQ((Lines{lines[1][1], lines[2][1], lines[3][1]}), (Lines{"0.000", "1.000", "2.000"}));
  EXPECT_EQ((Lines{lines[1][2], lines[2][2], lines[3][2]}), (Lines{"1.000", "1.500", "2.000"}));
  EXPECT_EQ((Lines{lines[1][7], lines[2][7], lines[3][7]}), (Lines{"1000", "1100", "1200"}));
  EXPECT_EQ((Lines{lines[1][8], lines[2][8], lines[3][8]}), (Lines{"2000", "2100", "2200"}));
}

TEST_F(LoggingTest, TemperaturesAreCelsiusAlsoWhereFahrenheitIsShown) {
  platform_.defaults.setInteger("temperatureUnit", 1);
  startWithUsableHelper();
  log(true);
  sampleFor(1);
  log(false);
  const auto lines = readCsv(file().second);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0][10], "CPU MIN Temperature (C)");
  EXPECT_EQ(lines[1][10], "-1");  // this Mac has no sensor; converted it would read 30
}

TEST_F(LoggingTest, ItIsNamedAfterItsStartAndLiesOnTheDesktop) {
  startWithUsableHelper();
  log(true);
  platform_.clock.set(platform_.clock.now() + 90s);
  log(false);
  EXPECT_EQ(file().first, "/home/ada/Desktop/PwrData 2026-03-05 at 13.02.33.csv");
}

TEST_F(LoggingTest, TheUserIsToldOfStartAndEnd) {
  startWithUsableHelper();
  log(true);
  EXPECT_EQ(notices(),
            Lines{"Logging started: The log file will be written when logging is stopped."});
  log(false);
  ASSERT_EQ(notices().size(), 2u);
  EXPECT_EQ(notices()[1], "Logging ended: Saved at: " + file().first);
}

TEST_F(LoggingTest, AHelperThatDiesLeavesTheRowsToTheLog) {
  startWithUsableHelper();
  log(true);
  sampleFor(3);
  helperDies();
  log(false);
  EXPECT_EQ(readCsv(file().second).size(), 4u);
}

TEST_F(LoggingTest, WithoutLoggingNothingIsWritten) {
  startWithUsableHelper();
  sampleFor(3);
  EXPECT_EQ(platform_.desktop.files.writes(), Lines{});
  EXPECT_EQ(notices(), Lines{});
}

TEST_F(LoggingTest, AProgramThatEndsWhileLoggingWritesNothing) {
  startWithUsableHelper();
  log(true);
  sampleFor(3);
  general().applicationWillTerminate();
  queue().run();
  EXPECT_EQ(platform_.desktop.files.writes(), Lines{});
}

}  // namespace
}  // namespace pallimo::scenarios
