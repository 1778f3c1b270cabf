// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_rows.h"

#include <utility>

namespace pallimo::logging {
namespace {

constexpr std::size_t kChunk = LogRows::kRowsPerChunk;

LogRow numbered(std::size_t number) {
  LogRow row;
  row.pkgPower = static_cast<double>(number);
  return row;
}

LogRows rowsUpTo(std::size_t count) {
  LogRows rows;
  for (std::size_t i = 0; i < count; ++i) {
    rows.append(numbered(i), base::TimeOfDay(static_cast<int>(i)));
  }
  return rows;
}

TEST(LogRows, HoldNothingAtFirst) {
  const LogRows rows;
  EXPECT_EQ(rows.size(), 0u);
  EXPECT_EQ(rows.capacity(), 0u);
}

TEST(LogRows, StandInTheOrderInWhichTheyCame) {
  const LogRows rows = rowsUpTo(3 * kChunk + 7);
  ASSERT_EQ(rows.size(), 3 * kChunk + 7);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    ASSERT_EQ(rows[i].row.pkgPower, static_cast<double>(i));
    ASSERT_EQ(rows[i].timeOfDay, base::TimeOfDay(static_cast<int>(i)));
  }
}

TEST(LogRows, HaveRoomForLessThanAChunkMoreThanTheyHold) {
  LogRows rows;
  for (std::size_t i = 0; i < 3 * kChunk; ++i) {
    rows.append(numbered(i), {});
    ASSERT_LT(rows.capacity() - rows.size(), kChunk) << i;
  }
  EXPECT_EQ(rows.capacity(), rows.size());
}

TEST(LogRows, ADayTakesLessThan200BytesARow) {
  constexpr std::size_t kDay = 86'400;
  const LogRows rows = rowsUpTo(kDay);
  // A chunk costs three pointers, in a list that has doubled at most once too often.
  const std::size_t chunks = rows.capacity() / kChunk;
  const std::size_t bytes =
      rows.capacity() * sizeof(LogRows::Entry) + 2 * chunks * sizeof(std::vector<int>);
  EXPECT_LE(bytes, kDay * 200);
}

TEST(LogRows, ALongerLogCopiesNoRow) {
  LogRows rows = rowsUpTo(1);
  const LogRows::Entry* const first = &rows[0];
  for (std::size_t i = 1; i < 100 * kChunk; ++i) rows.append(numbered(i), {});
  EXPECT_EQ(&rows[0], first);
}

TEST(LogRows, MovingLeavesTheRowsWhereTheyAre) {
  LogRows rows = rowsUpTo(2 * kChunk);
  const LogRows::Entry* const last = &rows[2 * kChunk - 1];
  const LogRows moved = std::exchange(rows, {});
  EXPECT_EQ(&moved[2 * kChunk - 1], last);
  EXPECT_EQ(moved.size(), 2 * kChunk);
}

TEST(LogRows, BeginAnewWhenTheyWereTakenAway) {
  LogRows rows = rowsUpTo(kChunk + 1);
  const LogRows taken = std::exchange(rows, {});
  rows.append(numbered(42), {});
  EXPECT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].row.pkgPower, 42);
}

}  // namespace
}  // namespace pallimo::logging
