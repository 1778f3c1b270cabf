// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/window_place.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace pallimo::ui {
namespace {

constexpr DesktopArea kScreen{{0, 0}, 1920, 1080};
constexpr DesktopArea kRightScreen{{1920, 0}, 1280, 1024};

WindowPlace placed(WindowPlace wanted, const std::vector<DesktopArea>& screens = {kScreen},
                   int width = 380, int height = 698) {
  return placeOnScreens({wanted, width, height}, screens);
}

TEST(WindowPlace, ReadsWhatItWrote) {
  for (const WindowPlace place : {WindowPlace{0, 0}, {120, 80}, {-1500, 300}, {5, -7}}) {
    EXPECT_EQ(windowPlaceFrom(windowPlaceText(place)), place);
  }
  EXPECT_EQ(windowPlaceText({120, -80}), "120 -80");
}

TEST(WindowPlace, IgnoresEveryOtherText) {
  for (const char* text : {"", " ", "120", "120 ", " 120 80", "120  80", "120,80", "120 80 ",
                           "120 80 3", "x y", "1.5 2", "120 80x", "99999999999 0", "0 99999999999",
                           "1000001 0", "0 -1000001", "+1 2", "0x10 2"}) {
    EXPECT_EQ(windowPlaceFrom(text), std::nullopt) << '"' << text << '"';
  }
}

TEST(WindowPlace, StaysWhereItIsOnAScreen) {
  EXPECT_EQ(placed({0, 0}), (WindowPlace{0, 0}));
  EXPECT_EQ(placed({700, 200}), (WindowPlace{700, 200}));
}

TEST(WindowPlace, StaysPartlyBesideTheScreenWhileItsUpperEdgeIsInReach) {
  EXPECT_EQ(placed({1920 - kReachableWidth, 200}), (WindowPlace{1920 - kReachableWidth, 200}));
  EXPECT_EQ(placed({kReachableWidth - 380, 200}), (WindowPlace{kReachableWidth - 380, 200}));
  EXPECT_EQ(placed({700, 1080 - kReachableHeight}), (WindowPlace{700, 1080 - kReachableHeight}));
}

TEST(WindowPlace, MovesIntoTheScreenWhenTooLittleIsInReach) {
  EXPECT_EQ(placed({1920 - kReachableWidth + 1, 200}), (WindowPlace{1920 - 380, 200}));
  EXPECT_EQ(placed({kReachableWidth - 381, 200}), (WindowPlace{0, 200}));
  EXPECT_EQ(placed({700, 1080 - kReachableHeight + 1}), (WindowPlace{700, 1080 - 698}));
  EXPECT_EQ(placed({700, -1}), (WindowPlace{700, 0}));
}

TEST(WindowPlace, KeepsToEveryScreen) {
  EXPECT_EQ(placed({2500, 100}, {kScreen, kRightScreen}), (WindowPlace{2500, 100}));
  EXPECT_EQ(placed({2500, 100}), (WindowPlace{1540, 100}));
}

TEST(WindowPlace, MovesToTheNearestScreen) {
  EXPECT_EQ(placed({4000, 100}, {kScreen, kRightScreen}), (WindowPlace{3200 - 380, 100}));
  EXPECT_EQ(placed({-4000, 100}, {kScreen, kRightScreen}), (WindowPlace{0, 100}));
}

TEST(WindowPlace, ShowsTheUpperLeftCornerOnAScreenThatIsTooSmall) {
  EXPECT_EQ(placed({900, 900}, {{{10, 20}, 300, 400}}), (WindowPlace{10, 20}));
}

TEST(WindowPlace, StaysWithoutAScreen) { EXPECT_EQ(placed({5, 6}, {}), (WindowPlace{5, 6})); }

TEST(WindowPlace, CanBeFarOff) {
  EXPECT_EQ(placed({1'000'000, -1'000'000}), (WindowPlace{1540, 0}));
}

}  // namespace
}  // namespace pallimo::ui
