// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/graph_data.h"

#include <gtest/gtest.h>

namespace pallimo::ui {
namespace {

const GraphData kSeries = {"an id", {0.5, 0.25}, SeriesColor::cyan};

/// Series that differ from kSeries in one field each.
std::vector<GraphData> otherSeries() {
  return {{"another id", {0.5, 0.25}, SeriesColor::cyan},
          {"an id", {0.25, 0.5}, SeriesColor::cyan},
          {"an id", {0.5}, SeriesColor::cyan},
          {"an id", {0.5, 0.25}, SeriesColor::pink}};
}

TEST(GraphData, IsEqualByItsFields) {
  EXPECT_EQ(kSeries, GraphData(kSeries));
  for (const GraphData& other : otherSeries()) EXPECT_FALSE(kSeries == other);
}

TEST(GraphData, IsHashableByItsFields) {
  const std::hash<GraphData> hash;
  EXPECT_EQ(hash(kSeries), hash(GraphData(kSeries)));
  for (const GraphData& other : otherSeries()) EXPECT_NE(hash(kSeries), hash(other));
}

TEST(GraphData, EqualSeriesWithZeroesOfEitherSignHashEqually) {
  const GraphData positive = {"an id", {0.0}, SeriesColor::blue};
  const GraphData negative = {"an id", {-0.0}, SeriesColor::blue};
  ASSERT_EQ(positive, negative);
  EXPECT_EQ(std::hash<GraphData>()(positive), std::hash<GraphData>()(negative));
}

}  // namespace
}  // namespace pallimo::ui
