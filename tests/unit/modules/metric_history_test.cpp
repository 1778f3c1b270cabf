// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/metric_history.h"

#include <cmath>
#include <limits>

namespace pallimo::modules {
namespace {

using Values = std::vector<double>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The history after the values came in this order.
MetricHistory historyOf(const Values& values) {
  MetricHistory history;
  for (const double value : values) history.insert(value);
  return history;
}

/// 0, 1, 2 and so on.
MetricHistory countingHistory(int count, std::size_t limit = MetricHistory::kHistoryLength) {
  MetricHistory history(limit);
  for (int i = 0; i < count; ++i) history.insert(i);
  return history;
}

TEST(MetricHistory, IsEmptyAtFirst) {
  const auto snapshot = MetricHistory().snapshot();
  EXPECT_TRUE(snapshot.newest.empty());
  EXPECT_EQ(snapshot.length, 0u);
}

TEST(MetricHistory, TheNewestValueIsTheFirst) {
  EXPECT_EQ(historyOf({1, 2, 3}).snapshot().newest, (Values{3, 2, 1}));
}

TEST(MetricHistory, KeepsThreeHundredAndFiftyValues) {
  const auto snapshot = countingHistory(350).snapshot();
  EXPECT_EQ(snapshot.length, 350u);
  EXPECT_EQ(snapshot.newest.size(), 350u);
  EXPECT_EQ(snapshot.newest.back(), 0);
}

TEST(MetricHistory, DropsTheOldestBeyondThat) {
  const auto snapshot = countingHistory(351).snapshot();
  EXPECT_EQ(snapshot.length, 350u);
  EXPECT_EQ(snapshot.newest.front(), 350);
  EXPECT_EQ(snapshot.newest.back(), 1);
}

TEST(MetricHistory, StaysInOrderHoweverLongItRuns) {
  const auto newest = countingHistory(10'000).snapshot().newest;
  ASSERT_EQ(newest.size(), 350u);
  for (std::size_t i = 0; i < newest.size(); ++i) {
    EXPECT_EQ(newest[i], 9999 - static_cast<double>(i));
  }
}

TEST(MetricHistory, AnUnboundedOneKeepsEverything) {
  EXPECT_EQ(countingHistory(100'000, MetricHistory::kUnbounded).snapshot().length, 100'000u);
}

TEST(MetricHistory, ASnapshotCarriesTheNewestOfAnUnboundedOne) {
  const auto snapshot = countingHistory(100'000, MetricHistory::kUnbounded).snapshot();
  ASSERT_EQ(snapshot.newest.size(), 512u);
  EXPECT_EQ(snapshot.newest.front(), 99'999);
  EXPECT_EQ(snapshot.newest.back(), 99'999 - 511);
}

TEST(MetricHistory, AnEmptyOneHasNoNewestValue) {
  EXPECT_EQ(MetricHistory().newest(), std::nullopt);
}

TEST(MetricHistory, NamesItsNewestValue) {
  EXPECT_EQ(historyOf({1, 3, 2}).newest(), 2);
  EXPECT_TRUE(std::isnan(historyOf({5, kNaN}).newest().value()));
}

TEST(MetricHistory, AnEmptyOneHasNoLargestValue) {
  EXPECT_EQ(MetricHistory().largest(), std::nullopt);
}

TEST(MetricHistory, FindsTheLargestValueWhereverItStands) {
  EXPECT_EQ(historyOf({3, 1, 2}).largest(), 3);
  EXPECT_EQ(historyOf({1, 3, 2}).largest(), 3);
  EXPECT_EQ(historyOf({1, 2, 3}).largest(), 3);
  EXPECT_EQ(historyOf({-1, -2}).largest(), -1);
}

TEST(MetricHistory, TheLargestValueLeavesWithTheOldest) {
  MetricHistory history;
  history.insert(1000);
  for (int i = 0; i < 349; ++i) history.insert(1);
  EXPECT_EQ(history.largest(), 1000);
  history.insert(1);
  EXPECT_EQ(history.largest(), 1);
}

TEST(MetricHistory, InfinityIsTheLargest) {
  EXPECT_EQ(historyOf({1, kInfinity, 2}).largest(), kInfinity);
}

TEST(MetricHistory, ANewestValueThatIsNotANumberStaysTheLargest) {
  EXPECT_TRUE(std::isnan(historyOf({5, kNaN}).largest().value()));
}

TEST(MetricHistory, AnOlderValueThatIsNotANumberIsPassedOver) {
  EXPECT_EQ(historyOf({kNaN, 5}).largest(), 5);
  EXPECT_EQ(historyOf({7, kNaN, 5}).largest(), 7);
}

}  // namespace
}  // namespace pallimo::modules
