// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/sample_times.h"

#include <gtest/gtest.h>

#include <thread>

namespace pallimo::ui {
namespace {

SampleTimes::TimePoint second(int number) {
  return SampleTimes::TimePoint(std::chrono::seconds(number));
}

TEST(SampleTimes, TheNewestIsIndexZero) {
  SampleTimes times;
  times.add(second(1));
  times.add(second(2));
  times.add(second(4));
  EXPECT_EQ(times.at(0), second(4));
  EXPECT_EQ(times.at(1), second(2));
  EXPECT_EQ(times.at(2), second(1));
}

TEST(SampleTimes, ASampleThatIsNotThereHasNoTime) {
  SampleTimes times;
  EXPECT_EQ(times.at(0), std::nullopt);
  times.add(second(1));
  EXPECT_EQ(times.at(1), std::nullopt);
}

TEST(SampleTimes, KeepsTheNewestThreeHundredAndFifty) {
  SampleTimes times;
  for (int i = 1; i <= 1000; ++i) times.add(second(i));
  EXPECT_EQ(times.at(0), second(1000));
  EXPECT_EQ(times.at(349), second(651));
  EXPECT_EQ(times.at(350), std::nullopt);
}

TEST(SampleTimes, ClearingForgetsAll) {
  SampleTimes times;
  for (int i = 1; i <= 400; ++i) times.add(second(i));
  times.clear();
  EXPECT_EQ(times.at(0), std::nullopt);
  times.add(second(7));
  EXPECT_EQ(times.at(0), second(7));
  EXPECT_EQ(times.at(1), std::nullopt);
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
    const auto newest = times.at(0);
    if (!newest) continue;
    EXPECT_GE(*newest, last);
    last = *newest;
  }
  writer.join();
  EXPECT_EQ(times.at(0), second(2001));
}

}  // namespace
}  // namespace pallimo::ui
