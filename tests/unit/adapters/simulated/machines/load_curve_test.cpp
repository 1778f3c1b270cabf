// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/load_curve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace pallimo::adapters::simulated {
namespace {

TEST(LoadCurve, ChanceStaysWithinZeroAndOne) {
  const LoadCurve curve(1);
  for (std::int64_t i = -1000; i < 1000; ++i) {
    EXPECT_GE(curve.chance(3, i), 0);
    EXPECT_LT(curve.chance(3, i), 1);
  }
}

TEST(LoadCurve, ChanceDependsOnSeedChannelAndIndex) {
  const LoadCurve curve(1);
  EXPECT_EQ(curve.chance(3, 5), LoadCurve(1).chance(3, 5));
  EXPECT_NE(curve.chance(3, 5), LoadCurve(2).chance(3, 5));
  EXPECT_NE(curve.chance(3, 5), curve.chance(4, 5));
  EXPECT_NE(curve.chance(3, 5), curve.chance(3, 6));
}

TEST(LoadCurve, ChanceIsEvenlySpread) {
  double sum = 0;
  for (std::int64_t i = 0; i < 10'000; ++i) sum += LoadCurve(1).chance(3, i);
  EXPECT_NEAR(sum / 10'000, 0.5, 0.02);
}

TEST(LoadCurve, NoiseHasNoJumps) {
  const LoadCurve curve(1);
  for (double time = -20; time < 20; time += 0.01) {
    EXPECT_NEAR(curve.noise(3, time, 2), curve.noise(3, time + 0.01, 2), 0.02);
  }
}

TEST(LoadCurve, BurstsComeInSomeWindowsOnly) {
  const LoadCurve curve(1);
  int quiet = 0;
  for (int window = 0; window < 1000; ++window) {
    double highest = 0;
    for (double part = 0; part < 10; part += 0.5) {
      highest = std::max(highest, curve.burst(3, window * 10 + part, 10, 0.4));
    }
    quiet += highest == 0 ? 1 : 0;
    EXPECT_LE(highest, 1);
  }
  EXPECT_NEAR(quiet, 600, 60);
}

TEST(LoadCurve, BurstsRiseWithinASecond) {
  const LoadCurve curve(1);
  for (double time = 0; time < 500; time += 0.01) {
    EXPECT_NEAR(curve.burst(3, time, 10, 1), curve.burst(3, time + 0.01, 10, 1), 0.02);
  }
}

TEST(LoadCurve, HasNoEnd) {
  const LoadCurve curve(1);
  for (const double time : {-1e300, -1e18, 1e18, 1e300}) {
    EXPECT_TRUE(std::isfinite(curve.noise(3, time, 2)));
    EXPECT_TRUE(std::isfinite(curve.burst(3, time, 10, 0.5)));
  }
}

}  // namespace
}  // namespace pallimo::adapters::simulated
