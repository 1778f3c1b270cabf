// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/power_axis.h"

#include <cmath>
#include <limits>
#include <sstream>

namespace pallimo::modules {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string drawn(const PowerAxis& axis) {
  std::string text;
  for (const std::string_view label : axis.labels) {
    if (!text.empty()) text += ' ';
    text += label;
  }
  return text;
}

struct Expected {
  double bound;
  const char* labels;
};

// Written down a second time, on purpose.
constexpr Expected kExpected[] = {
    {20, "20 15 10 5 0"},
    {30, "30 25 20 15 10 5 0"},
    {40, "40 30 20 10 0"},
    {50, "50 40 30 20 10 0"},
    {60, "60 50 40 30 20 10 0"},
    {70, "70 60 50 40 30 20 10 0"},
    {80, "80 60 40 20 0"},
    {90, "90 75 60 45 30 15 0"},
    {100, "100 80 60 40 20 0"},
    {120, "120 100 80 60 40 20 0"},
    {150, "150 125 100 75 50 25 0"},
    {200, "200 150 100 50 0"},
    {250, "250 200 150 100 50 0"},
    {300, "300 250 200 150 100 50 0"},
    {400, "400 300 200 100 0"},
    {500, "500 400 300 200 100 0"},
    {600, "600 500 400 300 200 100 0"},
    {700, "700 600 500 400 300 200 100 0"},
    {800, "800 640 480 320 160 0"},
};
constexpr const char* kLast = "800 640 480 320 160 0";

TEST(PowerAxis, ShowsThirtyDownToZeroAndNoMaximumBeforeTheFirstSample) {
  EXPECT_EQ(drawn(initialPowerAxis()), "30 25 20 15 10 5 0");
  EXPECT_EQ(initialPowerAxis().maxValue, 0);
}

TEST(PowerAxis, AnEmptyHistoryTakesTheLowestAxis) {
  EXPECT_EQ(drawn(powerAxisFor(std::nullopt)), "20 15 10 5 0");
  EXPECT_EQ(powerAxisFor(std::nullopt).maxValue, 20);
}

TEST(PowerAxis, EachBoundBelongsToItsOwnRow) {
  for (const Expected& row : kExpected) EXPECT_EQ(drawn(powerAxisFor(row.bound)), row.labels);
}

TEST(PowerAxis, JustAboveABoundTheNextRowBegins) {
  for (std::size_t i = 0; i < std::size(kExpected); ++i) {
    const char* next = i + 1 < std::size(kExpected) ? kExpected[i + 1].labels : kLast;
    const double above = std::nextafter(kExpected[i].bound, kInfinity);
    EXPECT_EQ(drawn(powerAxisFor(above)), next) << kExpected[i].bound;
  }
}

TEST(PowerAxis, TheMaximumIsTheNumberThatTheFirstLabelWrites) {
  for (const Expected& row : kExpected) EXPECT_EQ(powerAxisFor(row.bound).maxValue, row.bound);
}

TEST(PowerAxis, TwentyWattsTakeTheRowOfTwentyAndALittleMoreThatOfThirty) {
  EXPECT_EQ(powerAxisFor(20).maxValue, 20);
  EXPECT_EQ(powerAxisFor(20.0001).maxValue, 30);
}

TEST(PowerAxis, NothingAndLessTakeTheLowestRow) {
  EXPECT_EQ(powerAxisFor(0).maxValue, 20);
  EXPECT_EQ(powerAxisFor(-5).maxValue, 20);
  EXPECT_EQ(powerAxisFor(-kInfinity).maxValue, 20);
}

TEST(PowerAxis, StaysAtEightHundredAbove) {
  EXPECT_EQ(drawn(powerAxisFor(5000)), kLast);
  EXPECT_EQ(powerAxisFor(5000).maxValue, 800);
  EXPECT_EQ(powerAxisFor(kInfinity).maxValue, 800);
}

TEST(PowerAxis, WhatIsNotANumberTakesTheLastRow) {
  EXPECT_EQ(drawn(powerAxisFor(std::numeric_limits<double>::quiet_NaN())), kLast);
}

TEST(PowerAxis, LabelsAreEvenlySpacedDownToZero) {
  for (const Expected& row : kExpected) {
    const PowerAxis axis = powerAxisFor(row.bound);
    const double step = axis.maxValue / static_cast<double>(axis.labels.size() - 1);
    for (std::size_t i = 0; i < axis.labels.size(); ++i) {
      EXPECT_EQ(std::stod(std::string(axis.labels[i])),
                axis.maxValue - step * static_cast<double>(i))
          << row.bound;
    }
  }
}

}  // namespace
}  // namespace pallimo::modules
