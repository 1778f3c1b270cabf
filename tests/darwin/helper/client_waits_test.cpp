// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/macos/client_waits.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace pallimo::helper {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

TEST(ClientWaits, LetInNoMoreThanTheirNumber) {
  ClientWaits waits(2);
  EXPECT_TRUE(waits.begin());
  EXPECT_TRUE(waits.begin());
  EXPECT_FALSE(waits.begin());
}

TEST(ClientWaits, GiveAPlaceBackWhenOneHasSpokenOrGone) {
  ClientWaits waits(1);
  EXPECT_TRUE(waits.begin());
  waits.end();
  EXPECT_TRUE(waits.begin());
}

TEST(ClientWaits, OneThatWasTurnedAwayTakesNoPlace) {
  ClientWaits waits(1);
  EXPECT_TRUE(waits.begin());
  EXPECT_FALSE(waits.begin());
  waits.end();
  EXPECT_TRUE(waits.finish(milliseconds(0)));
}

TEST(ClientWaits, AreFinishedAtOnceWhenThereAreNone) {
  EXPECT_TRUE(ClientWaits(1).finish(minutes(10)));
}

TEST(ClientWaits, AreFinishedWhenTheLastHasSpoken) {
  ClientWaits waits(2);
  ASSERT_TRUE(waits.begin() && waits.begin());
  std::thread clients([&waits] {
    waits.end();
    waits.end();
  });
  EXPECT_TRUE(waits.finish(minutes(10)));
  clients.join();
}

TEST(ClientWaits, AreFinishedAfterTheLimitWhileOneStaysSilent) {
  ClientWaits waits(1);
  ASSERT_TRUE(waits.begin());
  EXPECT_FALSE(waits.finish(milliseconds(1)));
}

}  // namespace
}  // namespace pallimo::helper
