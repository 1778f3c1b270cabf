// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/colors.h"

#include <gtest/gtest.h>

namespace pallimo::ui::widgets {
namespace {

TEST(Colors, AreThePalettes) { EXPECT_EQ(toColor({10, 20, 30, 40}), QColor(10, 20, 30, 40)); }

TEST(Colors, BlendIntoAnOpaqueColour) {
  EXPECT_EQ(blended(Qt::white, Qt::black, 0.1), QColor(230, 230, 230));
  EXPECT_EQ(blended(Qt::black, Qt::white, 0.1), QColor(26, 26, 26));
}

TEST(Colors, BlendToWhatIsBelowAtNoOpacityAndToWhatIsAboveAtFull) {
  EXPECT_EQ(blended(Qt::red, Qt::blue, 0), QColor(Qt::red));
  EXPECT_EQ(blended(Qt::red, Qt::blue, 1), QColor(Qt::blue));
}

TEST(Colors, BlendByTheColoursOwnOpacityToo) {
  EXPECT_EQ(blended(Qt::black, QColor(200, 200, 200, 0), 1), QColor(Qt::black));
}

}  // namespace
}  // namespace pallimo::ui::widgets
