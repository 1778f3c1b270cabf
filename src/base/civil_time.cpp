// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/civil_time.h"

#include <time.h>

#include "base/mutex.h"

namespace pallimo::base {

namespace {

using std::chrono::system_clock;

template <class BreakDown>
CivilTime civil(system_clock::time_point time, BreakDown breakDown) {
  const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time);
  const auto second = std::chrono::floor<std::chrono::seconds>(milliseconds);
  const time_t seconds = second.time_since_epoch().count();
  tm fields{};
  if (breakDown(&seconds, &fields) == nullptr) return {};
  return {.year = fields.tm_year + 1900,
          .month = fields.tm_mon + 1,
          .day = fields.tm_mday,
          .weekday = fields.tm_wday,
          .hour = fields.tm_hour,
          .minute = fields.tm_min,
          .second = fields.tm_sec,
          .millisecond = static_cast<int>((milliseconds - second).count())};
}

/// localtime_r alone may keep the zone that the process began in, however far it has travelled.
tm* localFields(const time_t* seconds, tm* fields) {
  // The C library locks for itself, where the thread sanitizer can't see it.
  static base::Mutex mutex;
  base::MutexLock lock(mutex);
  tzset();
  return localtime_r(seconds, fields);
}

}  // namespace

CivilTime localTime(system_clock::time_point time) { return civil(time, localFields); }

std::chrono::seconds offsetFromUtc(system_clock::time_point time) {
  const time_t seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
  tm fields{};
  if (localFields(&seconds, &fields) == nullptr) return {};
  return std::chrono::seconds(fields.tm_gmtoff);
}

CivilTime utcTime(system_clock::time_point time) { return civil(time, gmtime_r); }

TimeOfDay timeOfDay(const CivilTime& time) {
  return std::chrono::hours(time.hour) + std::chrono::minutes(time.minute) +
         std::chrono::seconds(time.second) + TimeOfDay(time.millisecond);
}

int weekBasedYear(const CivilTime& time) {
  constexpr int kSaturday = 6;
  constexpr int kDaysInDecember = 31;
  const int lastDayOfWeek = time.day + (kSaturday - time.weekday);
  return time.month == 12 && lastDayOfWeek > kDaysInDecember ? time.year + 1 : time.year;
}

}  // namespace pallimo::base
