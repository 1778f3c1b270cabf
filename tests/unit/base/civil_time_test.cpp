// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/civil_time.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "unit/base/zone_scope.h"

namespace pallimo::base {
namespace {

using namespace std::chrono_literals;
using std::chrono::day;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::system_clock;
using std::chrono::year;
using tests::ZoneScope;

constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";

system_clock::time_point midnight(int y, unsigned m, unsigned d) {
  return sys_days{year(y) / month(m) / day(d)};
}

CivilTime localIn(const char* zone, system_clock::time_point time) {
  const ZoneScope scope(zone);
  return localTime(time);
}

/// "hours:minutes" of the clock on the wall.
std::string clockIn(const char* zone, system_clock::time_point time) {
  const CivilTime local = localIn(zone, time);
  return std::to_string(local.hour) + ":" + std::to_string(local.minute);
}

int weekBasedYearOf(int y, unsigned m, unsigned d) {
  return weekBasedYear(utcTime(midnight(y, m, d)));
}

TEST(CivilTime, TellsEveryFieldOfAMoment) {
  EXPECT_EQ(utcTime(midnight(2024, 3, 5) + 14h + 2min + 33s + 45ms),
            (CivilTime{2024, 3, 5, 2, 14, 2, 33, 45}));
}

TEST(CivilTime, BeginsWithTheThursdayOf1970) {
  EXPECT_EQ(utcTime(system_clock::time_point{}), CivilTime{});
  EXPECT_EQ(CivilTime{}, (CivilTime{1970, 1, 1, 4, 0, 0, 0, 0}));
}

TEST(CivilTime, CountsDownBefore1970) {
  EXPECT_EQ(utcTime(system_clock::time_point(-1ms)), (CivilTime{1969, 12, 31, 3, 23, 59, 59, 999}));
  EXPECT_EQ(utcTime(midnight(1904, 2, 29)), (CivilTime{1904, 2, 29, 1, 0, 0, 0, 0}));
}

TEST(CivilTime, CutsOffWhatIsLessThanAMillisecond) {
  EXPECT_EQ(utcTime(system_clock::time_point(999'999us)).millisecond, 999);
  EXPECT_EQ(utcTime(system_clock::time_point(-1us)), (CivilTime{1969, 12, 31, 3, 23, 59, 59, 999}));
  EXPECT_EQ(utcTime(system_clock::time_point(-1'000'001us)).second, 58);
}

TEST(CivilTime, KnowsTheCenturiesWithoutALeapDay) {
  EXPECT_EQ(utcTime(midnight(2000, 2, 28) + 24h).day, 29);
  EXPECT_EQ(utcTime(midnight(2100, 2, 28) + 24h).month, 3);
}

TEST(CivilTime, UtcKnowsNoZone) {
  const ZoneScope zone(kBerlin);
  EXPECT_EQ(utcTime(midnight(2024, 7, 1) + 12h).hour, 12);
}

TEST(CivilTime, LocalTimeIsThatOfTheProcesssZone) {
  const auto noon = midnight(2024, 3, 5) + 12h;
  EXPECT_EQ(clockIn("UTC0", noon), "12:0");
  EXPECT_EQ(clockIn("IST-5:30", noon), "17:30");
  EXPECT_EQ(clockIn("PST8", noon), "4:0");
}

TEST(CivilTime, LocalTimeFollowsTheProcessToAnotherZone) {
  const tests::ZoneScope before("UTC0");
  const auto noon = midnight(2024, 3, 5) + 12h;
  EXPECT_EQ(localTime(noon).hour, 12);
  setenv("TZ", "IST-5:30", 1);  // as a journey does: nobody tells the process
  EXPECT_EQ(localTime(noon).hour, 17);
  EXPECT_EQ(offsetFromUtc(noon), 5h + 30min);
}

TEST(CivilTime, TheOffsetIsNegativeWestOfGreenwich) {
  const tests::ZoneScope zone("PST8");
  EXPECT_EQ(offsetFromUtc(midnight(2024, 3, 5)), -8h);
}

TEST(CivilTime, TheOffsetIsThatOfTheMoment) {
  const tests::ZoneScope zone(kBerlin);
  EXPECT_EQ(offsetFromUtc(midnight(2024, 1, 5)), 1h);
  EXPECT_EQ(offsetFromUtc(midnight(2024, 7, 5)), 2h);
}

TEST(CivilTime, LocalTimeHasAnotherDateBeyondMidnight) {
  EXPECT_EQ(localIn("NZST-12", midnight(2024, 12, 31) + 13h),
            (CivilTime{2025, 1, 1, 3, 1, 0, 0, 0}));
  EXPECT_EQ(localIn("PST8", midnight(2025, 1, 1)), (CivilTime{2024, 12, 31, 2, 16, 0, 0, 0}));
}

TEST(CivilTime, InSpringAnHourIsMissing) {
  const auto change = midnight(2024, 3, 31) + 1h;
  EXPECT_EQ(clockIn(kBerlin, change - 1min), "1:59");
  EXPECT_EQ(clockIn(kBerlin, change), "3:0");
}

TEST(CivilTime, InAutumnAnHourComesTwice) {
  const auto change = midnight(2024, 10, 27) + 1h;
  EXPECT_EQ(clockIn(kBerlin, change - 30min), "2:30");
  EXPECT_EQ(clockIn(kBerlin, change + 30min), "2:30");
}

TEST(CivilTime, MillisecondsStayInAZoneBefore1970) {
  EXPECT_EQ(localIn("IST-5:30", system_clock::time_point(-1ms)),
            (CivilTime{1970, 1, 1, 4, 5, 29, 59, 999}));
}

TEST(TimeOfDay, CountsMillisecondsFromMidnight) {
  EXPECT_EQ(timeOfDay(CivilTime{}), 0ms);
  EXPECT_EQ(timeOfDay({.hour = 23, .minute = 59, .second = 59, .millisecond = 999}), 24h - 1ms);
  EXPECT_EQ(timeOfDay({.hour = 1, .minute = 2, .second = 3, .millisecond = 4}), 3'723'004ms);
}

TEST(TimeOfDay, IsWhatTheClockShowsOnADayThatIsShort) {
  const CivilTime local = localIn(kBerlin, midnight(2024, 3, 31) + 1h);
  EXPECT_EQ(timeOfDay(local), 3h);
}

TEST(TimeOfDay, TakesFourBytes) { EXPECT_EQ(sizeof(TimeOfDay), 4u); }

/// The first day of December whose week, Sunday to Saturday, holds the next 1 January. Worked out
/// with another calendar: that of the Saturday which ends the week.
struct Winter {
  int year;
  unsigned firstDayOfNextYear;
};
constexpr unsigned kNone = 32;  // 1 January is a Sunday
constexpr Winter kWinters[] = {
    {1996, 29}, {1997, 28},    {1998, 27},    {1999, 26}, {2000, 31}, {2001, 30},    {2002, 29},
    {2003, 28}, {2004, 26},    {2005, kNone}, {2006, 31}, {2007, 30}, {2008, 28},    {2009, 27},
    {2010, 26}, {2011, kNone}, {2012, 30},    {2013, 29}, {2014, 28}, {2015, 27},    {2016, kNone},
    {2017, 31}, {2018, 30},    {2019, 29},    {2020, 27}, {2021, 26}, {2022, kNone}, {2023, 31},
    {2024, 29}, {2025, 28},    {2026, 27},    {2027, 26},
};

TEST(WeekBasedYear, IsTheNextOneFromTheSundayBeforeNewYearOn) {
  for (const Winter& winter : kWinters) {
    for (unsigned d = 25; d <= 31; ++d) {
      const int next = d >= winter.firstDayOfNextYear ? 1 : 0;
      EXPECT_EQ(weekBasedYearOf(winter.year, 12, d), winter.year + next) << winter.year << " " << d;
    }
  }
}

TEST(WeekBasedYear, IsTheYearItselfFromNewYearOn) {
  for (const Winter& winter : kWinters) {
    for (unsigned d = 1; d <= 7; ++d) {
      EXPECT_EQ(weekBasedYearOf(winter.year, 1, d), winter.year) << winter.year << " " << d;
    }
  }
}

TEST(WeekBasedYear, IsTheYearItselfAtTheEndOfEveryOtherMonth) {
  EXPECT_EQ(weekBasedYearOf(2024, 2, 29), 2024);
  EXPECT_EQ(weekBasedYearOf(2024, 3, 31), 2024);
  EXPECT_EQ(weekBasedYearOf(2024, 11, 30), 2024);
}

TEST(WeekBasedYear, KnowsTheYearsBefore1970) {
  EXPECT_EQ(weekBasedYearOf(1969, 12, 27), 1969);
  EXPECT_EQ(weekBasedYearOf(1969, 12, 28), 1970);
}

}  // namespace
}  // namespace pallimo::base
