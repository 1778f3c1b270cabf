// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_name.h"

#include "unit/base/zone_scope.h"

namespace pallimo::logging {
namespace {

using namespace std::chrono_literals;
using std::chrono::day;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::system_clock;
using std::chrono::year;

std::string nameAt(int y, unsigned m, unsigned d, system_clock::duration timeOfDay,
                   const char* zone = "UTC0") {
  const tests::ZoneScope scope(zone);
  return logFileName(sys_days{year(y) / month(m) / day(d)} + timeOfDay);
}

TEST(LogFileName, TellsWhenTheLogWasStarted) {
  EXPECT_EQ(nameAt(2024, 3, 5, 14h + 2min + 33s), "PwrData 2024-03-05 at 14.02.33");
}

TEST(LogFileName, CutsOffMilliseconds) {
  EXPECT_EQ(nameAt(2024, 3, 5, 999ms), "PwrData 2024-03-05 at 00.00.00");
}

TEST(LogFileName, IsThatOfTheLocalTime) {
  EXPECT_EQ(nameAt(2024, 3, 5, 20h + 45min, "IST-5:30"), "PwrData 2024-03-06 at 02.15.00");
}

TEST(LogFileName, CarriesTheYearOfTheWeek) {
  EXPECT_EQ(nameAt(2024, 12, 28, 12h), "PwrData 2024-12-28 at 12.00.00");
  EXPECT_EQ(nameAt(2024, 12, 29, 12h), "PwrData 2025-12-29 at 12.00.00");
  EXPECT_EQ(nameAt(2024, 12, 31, 12h), "PwrData 2025-12-31 at 12.00.00");
  EXPECT_EQ(nameAt(2025, 1, 1, 12h), "PwrData 2025-01-01 at 12.00.00");
}

TEST(LogFileName, TakesTheWeekOfTheLocalDay) {
  EXPECT_EQ(nameAt(2024, 12, 28, 20h, "NZST-12"), "PwrData 2025-12-29 at 08.00.00");
  EXPECT_EQ(nameAt(2024, 12, 29, 2h, "PST8"), "PwrData 2024-12-28 at 18.00.00");
}

TEST(LogFileName, KeepsTheYearWhereNewYearIsASunday) {
  EXPECT_EQ(nameAt(2022, 12, 31, 0h), "PwrData 2022-12-31 at 00.00.00");
}

}  // namespace
}  // namespace pallimo::logging
