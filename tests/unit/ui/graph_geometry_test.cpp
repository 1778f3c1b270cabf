// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/graph_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pallimo::ui {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Points = std::vector<Point>;
using Pieces = std::vector<Points>;

TEST(Outline, GoesClockwiseFromTheTopLeftAndCloses) {
  EXPECT_EQ(outline(300, 90), (Points{{0, 0}, {300, 0}, {300, 90}, {0, 90}, {0, 0}}));
}

TEST(GridLines, StandAtTheUpperEdgeOfEachBand) {
  const std::vector<Line> expected = {{{0, 0}, {300, 0}},   {{0, 15}, {300, 15}},
                                      {{0, 30}, {300, 30}}, {{0, 45}, {300, 45}},
                                      {{0, 60}, {300, 60}}, {{0, 75}, {300, 75}}};
  EXPECT_EQ(gridLines(7, 300, 90), expected);
}

TEST(GridLines, DivideTheHeightAfterMultiplying) {
  const auto lines = gridLines(8, 300, 92);
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_EQ(lines[3].from.y, 3.0 * 92 / 7);
  EXPECT_EQ(lines[3].to.y, 3.0 * 92 / 7);
}

TEST(GridLines, TwoLabelsGiveTheTopEdgeAlone) {
  EXPECT_EQ(gridLines(2, 300, 90), (std::vector<Line>{{{0, 0}, {300, 0}}}));
}

TEST(GridLines, OneLabelGivesNone) { EXPECT_TRUE(gridLines(1, 300, 90).empty()); }

TEST(GridLinesDeathTest, NoLabelStopsTheProgram) {
  EXPECT_DEATH(gridLines(0, 300, 90), "^A graph needs at least one axis label\\.\n$");
}

TEST(LabelOrigin, PutsTheMiddleOfEachLabelOnItsGridLine) {
  const auto lines = gridLines(7, 300, 90);
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const Point origin = labelOrigin(k, 7, 90);
    EXPECT_EQ(origin.x, 4) << k;
    EXPECT_EQ(origin.y + 5, lines[k].from.y) << k;
  }
}

TEST(LabelOrigin, OfSevenTheLastHasItsMiddleOnTheBottomEdge) {
  EXPECT_EQ(labelOrigin(6, 7, 90), (Point{4, 85}));
}

TEST(LabelOrigin, OfTheFirstIsFivePointsAboveTheBox) {
  EXPECT_EQ(labelOrigin(0, 7, 90), (Point{4, -5}));
}

TEST(LabelOrigin, OfALoneLabelIsAtTheTop) { EXPECT_EQ(labelOrigin(0, 1, 90), (Point{4, -5})); }

TEST(LabelOriginDeathTest, NoLabelStopsTheProgram) {
  EXPECT_DEATH(labelOrigin(0, 0, 90), "^A graph needs at least one axis label\\.\n$");
}

TEST(LabelPosition, IsThePlaceInTheList) {
  const std::vector<std::string> labels = {"20", "15", "10", "5", "0"};
  EXPECT_EQ(labelPosition(labels, "20"), 0u);
  EXPECT_EQ(labelPosition(labels, "10"), 2u);
  EXPECT_EQ(labelPosition(labels, "0"), 4u);
}

TEST(LabelPosition, EqualTextsShareTheFirstOnesPlace) {
  const std::vector<std::string> labels = {"20", "10", "10", "0"};
  EXPECT_EQ(labelPosition(labels, "10"), 1u);
}

TEST(LabelPosition, AnUnknownTextStandsAtTheTop) {
  EXPECT_EQ(labelPosition(std::vector<std::string>{"20", "10", "0"}, "7"), 0u);
  EXPECT_EQ(labelPosition({}, "7"), 0u);
}

TEST(Curve, GoesFromTheRightEdgeOnePointAValue) {
  EXPECT_EQ(curve(std::vector{0.5, 0.25, 0.75}, 300, 100),
            (Pieces{{{300, 50}, {299, 75}, {298, 25}}}));
}

TEST(Curve, OneIsTheTopEdgeAndZeroTheBottomEdge) {
  EXPECT_EQ(curve(std::vector{1.0, 0.0}, 300, 93), (Pieces{{{300, 0}, {299, 93}}}));
}

TEST(Curve, ValuesBeyondTheAxisLieBesideTheBox) {
  EXPECT_EQ(curve(std::vector{1.5, -0.5}, 300, 100), (Pieces{{{300, -50}, {299, 150}}}));
}

TEST(Curve, OneValueIsASinglePoint) {
  EXPECT_EQ(curve(std::vector{0.5}, 300, 100), (Pieces{{{300, 50}}}));
}

TEST(Curve, NoValuesAreNoLine) { EXPECT_TRUE(curve({}, 300, 100).empty()); }

TEST(Curve, TheOldestValuesOfALongSeriesLieLeftOfTheBox) {
  const auto pieces = curve(std::vector(5, 0.0), 3, 100);
  ASSERT_EQ(pieces.size(), 1u);
  EXPECT_EQ(pieces[0], (Points{{3, 100}, {2, 100}, {1, 100}, {0, 100}, {-1, 100}}));
}

TEST(Curve, IsNotStretchedToTheWidth) {
  EXPECT_EQ(curve(std::vector{0.0, 0.0}, 1000, 100)[0].back().x, 999);
}

TEST(Curve, BreaksWhereAValueIsNotFiniteAndMovesNoOther) {
  const std::vector data = {0.0, kNan, 0.5, 0.5, kInfinity, -kInfinity, 1.0};
  EXPECT_EQ(curve(data, 10, 100), (Pieces{{{10, 100}}, {{8, 50}, {7, 50}}, {{4, 0}}}));
}

TEST(Curve, GapsAtTheEndsLeaveNoEmptyPiece) {
  EXPECT_EQ(curve(std::vector{kNan, 0.5, kNan}, 10, 100), (Pieces{{{9, 50}}}));
  EXPECT_TRUE(curve(std::vector{kNan, kNan}, 10, 100).empty());
}

}  // namespace
}  // namespace pallimo::ui
