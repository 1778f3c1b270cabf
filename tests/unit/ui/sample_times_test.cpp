// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/sample_times.h"

#include <gtest/gtest.h>

#include <thread>

namespace pallimo::ui {
namespace {

using Times = std::vector<SampleTimes::TimePoint>;

SampleTimes::TimePoint second(int number) {
  return SampleTimes::TimePoint(std::chrono::seconds(number));
}

TEST(SampleTimes, TheNewestIsIndexZero) {
  SampleTimes times;
  times.add(second(1));
  times.add(second(2));
  times.add(second(4));
  EXPECT_EQ(times.newestFirst(), (Times{second(4), second(2), second(1)}));
}

TEST(SampleTimes, AreNoneBeforeTheFirstSample) { EXPECT_TRUE(SampleTimes().newestFirst().empty()); }

TEST(SampleTimes, KeepsTheNewestThreeHundredAndFifty) {
  SampleTimes times;
  for (int i = 1; i <= 1000; ++i) times.add(second(i));
  const Times kept = times.newestFirst();
  ASSERT_EQ(kept.size(), 350u);
  EXPECT_EQ(kept.front(), second(1000));
  EXPECT_EQ(kept.back(), second(651));
}

TEST(SampleTimes, ClearingForgetsAll) {
  SampleTimes times;
  for (int i = 1; i <= 400; ++i) times.add(second(i));
  times.clear();
  EXPECT_TRUE(times.newestFirst().empty());
  times.add(second(7));
  EXPECT_EQ(times.newestFirst(), Times{second(7)});
}

TEST(SampleTimes, MayBeReadWhileAnotherThreadWrites) {
  SampleTimes times;
  std::thread writer([&] {
    for (int i = 1; i <= 2000; ++i) {
      times.add(second(i));
      if (i % 500 == 0) times.clear();
    }
    times.add(second(2001));
  });
  auto last = second(0);
  for (int i = 0; i < 2000; ++i) {
    const Times newest = times.newestFirst();
    if (newest.empty()) continue;
    EXPECT_GE(newest.front(), last);
    last = newest.front();
  }
  writer.join();
  EXPECT_EQ(times.newestFirst(), Times{second(2001)});
}

}  // namespace
}  // namespace pallimo::ui
