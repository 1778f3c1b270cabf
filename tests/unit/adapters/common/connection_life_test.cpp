// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/common/connection_life.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>

namespace pallimo::adapters::common {
namespace {

/// A connection that was started.
void start(ConnectionLife& life) {
  ASSERT_TRUE(life.beginResuming());
  ASSERT_EQ(life.endResuming(true), Closing::nothing);
}

TEST(ConnectionLife, WhatWasStartedIsClosedAfterWhatItSent) {
  ConnectionLife life;
  start(life);
  EXPECT_EQ(life.end(), Closing::afterWhatWasSent);
}

TEST(ConnectionLife, WhatNeverStartedIsClosedAtOnceAndNeverStarts) {
  ConnectionLife life;
  EXPECT_EQ(life.end(), Closing::atOnce);
  EXPECT_FALSE(life.beginResuming());
}

TEST(ConnectionLife, WhatCouldNotBeStartedIsClosedAtOnce) {
  ConnectionLife life;
  ASSERT_TRUE(life.beginResuming());
  EXPECT_EQ(life.endResuming(false), Closing::atOnce);
  EXPECT_EQ(life.end(), Closing::nothing);
}

TEST(ConnectionLife, NobodyClosesWhatIsBeingStartedButWhoStartsIt) {
  ConnectionLife life;
  ASSERT_TRUE(life.beginResuming());
  EXPECT_EQ(life.end(), Closing::nothing);
  EXPECT_EQ(life.end(), Closing::nothing);
  EXPECT_EQ(life.endResuming(true), Closing::afterWhatWasSent);
  EXPECT_EQ(life.end(), Closing::nothing);
}

TEST(ConnectionLife, ACloseThatWasAskedForMeanwhileNeedsNoBarrierWhenNothingStarted) {
  ConnectionLife life;
  ASSERT_TRUE(life.beginResuming());
  EXPECT_EQ(life.end(), Closing::nothing);
  EXPECT_EQ(life.endResuming(false), Closing::atOnce);
}

TEST(ConnectionLife, ItIsStartedOnceAndClosedOnce) {
  ConnectionLife life;
  start(life);
  EXPECT_FALSE(life.beginResuming());
  EXPECT_EQ(life.end(), Closing::afterWhatWasSent);
  EXPECT_EQ(life.end(), Closing::nothing);
  EXPECT_FALSE(life.beginResuming());
}

TEST(ConnectionLife, OfThreadsThatStartAndEndItOneClosesIt) {
  for (int round = 0; round < 100; ++round) {
    ConnectionLife life;
    std::atomic<int> closings = 0;
    std::latch allRun(3);
    const auto end = [&] {
      allRun.arrive_and_wait();
      if (life.end() != Closing::nothing) ++closings;
    };
    std::thread first(end);
    std::thread second(end);
    allRun.arrive_and_wait();
    if (life.beginResuming() && life.endResuming(true) != Closing::nothing) ++closings;
    first.join();
    second.join();
    ASSERT_EQ(closings, 1);
  }
}

}  // namespace
}  // namespace pallimo::adapters::common
