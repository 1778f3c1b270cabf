// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "correlation.h"

#include <gtest/gtest.h>

namespace pallimo::adapters::simulated::tests {
namespace {

TEST(Correlation, IsOneForARisingLineAndMinusOneForAFallingOne) {
  EXPECT_DOUBLE_EQ(correlation({1, 2, 4}, {3, 5, 9}), 1);
  EXPECT_DOUBLE_EQ(correlation({1, 2, 4}, {9, 7, 3}), -1);
}

TEST(Correlation, IsNoughtForWhatHasNothingInCommon) {
  EXPECT_DOUBLE_EQ(correlation({1, 2, 1, 2}, {1, 1, 2, 2}), 0);
}

TEST(Correlation, RanksShareTheirPlaceWhenEqual) {
  EXPECT_EQ(ranks({30, 10, 20, 20}), (Series{3, 0, 1.5, 1.5}));
}

TEST(Correlation, OfRanksLooksAtTheOrderAlone) {
  EXPECT_DOUBLE_EQ(rankCorrelation({1, 2, 3}, {1, 100, 101}), 1);
  EXPECT_DOUBLE_EQ(rankCorrelation({1, 2, 3}, {3, 2, 1}), -1);
}

TEST(Correlation, FindsTheDelayOfAnEcho) {
  const Series sound{0, 5, 1, 0, 7, 2, 0, 0, 3, 1};
  const Series echo{0, 0, 0, 5, 1, 0, 7, 2, 0, 0};
  EXPECT_EQ(lagOfBest(sound, echo, 4), 2u);
  EXPECT_DOUBLE_EQ(laggedCorrelation(sound, echo, 2), 1);
}

}  // namespace
}  // namespace pallimo::adapters::simulated::tests
