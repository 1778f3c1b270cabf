// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/unix_signals.h"

#include <gtest/gtest.h>
#include <signal.h>

#include "unit/adapters/qt/event_loop.h"

namespace pallimo::adapters::qt {
namespace {

class UnixSignalsTest : public testing::TestWithParam<int> {
 protected:
  EventLoop loop_;
};

INSTANTIATE_TEST_SUITE_P(Both, UnixSignalsTest, testing::Values(SIGINT, SIGTERM));

TEST_P(UnixSignalsTest, ASignalArrivesFromTheEventLoop) {
  int arrived = 0;
  const UnixSignals caught([&] { ++arrived; });
  raise(GetParam());
  EXPECT_EQ(arrived, 0);
  EXPECT_TRUE(loop_.runUntil([&] { return arrived > 0; }));
  EXPECT_EQ(arrived, 1);
}

TEST_P(UnixSignalsTest, TheSecondSignalEndsTheProcess) {
  const UnixSignals caught([] {});
  EXPECT_EXIT(
      {
        raise(GetParam());
        raise(GetParam());
      },
      testing::KilledBySignal(GetParam()), "");
}

TEST_P(UnixSignalsTest, AfterwardsTheSignalDoesWhatItDidBefore) {
  signal(GetParam(), SIG_IGN);
  {
    const UnixSignals caught([] {});
  }
  raise(GetParam());  // would end the process
  signal(GetParam(), SIG_DFL);
}

}  // namespace
}  // namespace pallimo::adapters::qt
