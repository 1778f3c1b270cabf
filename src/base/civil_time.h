// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstdint>
#include <ratio>

namespace pallimo::base {

/// A moment as calendar and clock on the wall show it, Gregorian.
struct CivilTime {
  int year = 1970;
  int month = 1;    ///< 1 to 12
  int day = 1;      ///< 1 to 31
  int weekday = 4;  ///< 0 Sunday to 6 Saturday
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;  ///< those that are over, also before 1970: nothing is ever rounded up
  bool operator==(const CivilTime&) const = default;
};

/// The moment in the time zone that the process has now, also when it has changed since the last
/// call; 1970-01-01 00:00 where the zone has no answer, some two billion years from now. Any
/// thread.
CivilTime localTime(std::chrono::system_clock::time_point time);

/// How far that zone's clocks are ahead of UTC at the moment; negative west of Greenwich, 0 where
/// the zone has no answer. Any thread.
std::chrono::seconds offsetFromUtc(std::chrono::system_clock::time_point time);

/// The moment in the zone without an offset. Pure.
CivilTime utcTime(std::chrono::system_clock::time_point time);

/// What a clock shows, as the time since 0:00. Four bytes, for whoever keeps many of them.
using TimeOfDay = std::chrono::duration<std::int32_t, std::milli>;

/// The clock of `time`. On the days on which a zone changes its offset that is not the time since
/// midnight. Pure.
TimeOfDay timeOfDay(const CivilTime& time);

/// The year to which the day's week belongs, what "YYYY" is in date formats: weeks begin on Sunday,
/// and a year's first week is the one that holds 1 January. It differs from the year in the last
/// days of December only. Pure.
int weekBasedYear(const CivilTime& time);

}  // namespace pallimo::base
