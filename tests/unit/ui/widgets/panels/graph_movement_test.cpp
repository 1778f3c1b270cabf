// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_movement.h"

#include <gtest/gtest.h>

#include <limits>

namespace pallimo::ui::widgets {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::size_t kVisible = 6;

GraphView graphOf(std::vector<std::vector<double>> series) {
  GraphView graph;
  graph.axisLabels = {"1", "0"};
  for (auto& data : series) graph.datas.push_back({"", std::move(data), SeriesColor::blue});
  return graph;
}

std::optional<std::size_t> moved(std::vector<std::vector<double>> earlier,
                                 std::vector<std::vector<double>> later) {
  return movement(graphOf(std::move(earlier)), graphOf(std::move(later)), kVisible);
}

TEST(GraphMovement, IsNoneBetweenEqualGraphs) {
  EXPECT_EQ(moved({{1, 2, 3}}, {{1, 2, 3}}), 0u);
  EXPECT_EQ(moved({{}}, {{}}), 0u);
  EXPECT_EQ(moved({}, {}), 0u);
}

TEST(GraphMovement, IsOneWhenASampleCameInFront) {
  EXPECT_EQ(moved({{1, 2, 3}}, {{4, 1, 2, 3}}), 1u);
  EXPECT_EQ(moved({{}}, {{4}}), 1u);
}

TEST(GraphMovement, IsAsManyAsCame) { EXPECT_EQ(moved({{1, 2}}, {{5, 4, 3, 1, 2}}), 3u); }

TEST(GraphMovement, LooksAtValuesNotAtIds) {
  GraphView earlier = graphOf({{1, 2}});
  GraphView later = earlier;
  later.datas[0].id = "another";
  EXPECT_EQ(movement(earlier, later, kVisible), 0u);
}

TEST(GraphMovement, PassesOverWhatNobodySees) {
  EXPECT_EQ(moved({{1, 2, 3, 4, 5, 6, 7}}, {{1, 2, 3, 4, 5, 6, 99}}), 0u);
  EXPECT_EQ(moved({{1, 2, 3, 4, 5, 6, 7}}, {{0, 1, 2, 3, 4, 5}}), 1u);
}

TEST(GraphMovement, SeesTheLastVisibleValue) {
  EXPECT_EQ(moved({{1, 2, 3, 4, 5, 6}}, {{1, 2, 3, 4, 5, 99}}), std::nullopt);
  EXPECT_EQ(moved({{1, 2, 3, 4, 5}}, {{1, 2, 3, 4, 5, 6}}), std::nullopt);
}

TEST(GraphMovement, SeesAHistoryThatLostItsOldest) {
  EXPECT_EQ(moved({{1, 2, 3}}, {{4, 1, 2}}), std::nullopt);
  EXPECT_EQ(moved({{1, 2, 3}}, {{}}), std::nullopt);
}

TEST(GraphMovement, IsTheSameForAllSeries) {
  EXPECT_EQ(moved({{1, 2}, {5, 5}}, {{3, 1, 2}, {5, 5, 5}}), 1u);
  EXPECT_EQ(moved({{1, 2}, {5, 6}}, {{3, 1, 2}, {5, 6}}), std::nullopt);
}

TEST(GraphMovement, TakesSeriesWithoutValuesAlong) {
  EXPECT_EQ(moved({{1, 2}, {}}, {{3, 1, 2}, {}}), 1u);
}

TEST(GraphMovement, FindsOneOfAQuietSeriesByItsLength) {
  EXPECT_EQ(moved({{0, 0}}, {{0, 0, 0}}), 1u);
  EXPECT_EQ(moved({{0, 0, 0, 0, 0, 0}}, {{0, 0, 0, 0, 0, 0, 0}}), 0u);
}

TEST(GraphMovement, TakesAllGapsForAlike) {
  EXPECT_EQ(moved({{kNan, 2}}, {{1, kNan, 2}}), 1u);
  EXPECT_EQ(moved({{kNan, 2}}, {{kInfinity, 2}}), 0u);
  EXPECT_EQ(moved({{kNan, 2}}, {{0.0, 2}}), std::nullopt);
}

TEST(GraphMovement, IsNoneWhenTheKindOfGraphChanged) {
  const GraphView graph = graphOf({{1, 2}});
  GraphView recoloured = graph;
  recoloured.datas[0].color = SeriesColor::pink;
  EXPECT_EQ(movement(graph, recoloured, kVisible), std::nullopt);
  GraphView relabelled = graph;
  relabelled.axisLabels = {"1", "0.5", "0"};
  EXPECT_EQ(movement(graph, relabelled, kVisible), std::nullopt);
  EXPECT_EQ(movement(graph, graphOf({{1, 2}, {1, 2}}), kVisible), std::nullopt);
}

TEST(GraphMovement, IsNotLookedForBeyondItsLimit) {
  std::vector<double> values(kLargestMovement + 1, 0.0);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i + 1);
  const auto withNewest = [&](std::size_t newest) {
    std::vector<double> later(newest, 0.0);
    later.insert(later.end(), values.begin(), values.end());
    return movement(graphOf({values}), graphOf({later}), 200);
  };
  EXPECT_EQ(withNewest(kLargestMovement), kLargestMovement);
  EXPECT_EQ(withNewest(kLargestMovement + 1), std::nullopt);
}

}  // namespace
}  // namespace pallimo::ui::widgets
