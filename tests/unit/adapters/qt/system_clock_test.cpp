// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/system_clock.h"

#include <gtest/gtest.h>

namespace pallimo::adapters::qt {
namespace {

using namespace std::chrono_literals;
using std::chrono::system_clock;

constexpr system_clock::time_point kStart{1772715753123ms};

TEST(SystemClock, ShowsTheWallClockAtRealSpeed) {
  const SystemClock clock(kStart, 1);
  EXPECT_EQ(clock.at(kStart + 17s), kStart + 17s);
  const auto before = SystemClock::realNow();
  const auto now = clock.now();
  EXPECT_GE(now, before);
  EXPECT_LE(now, SystemClock::realNow());
}

TEST(SystemClock, BeginsAtTheStartAndGoesAsMuchFaster) {
  const SystemClock clock(kStart, 20);
  EXPECT_EQ(clock.at(kStart), kStart);
  EXPECT_EQ(clock.at(kStart + 1500ms), kStart + 30s);
}

}  // namespace
}  // namespace pallimo::adapters::qt
