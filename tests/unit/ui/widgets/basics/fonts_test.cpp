// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/fonts.h"

#include <gtest/gtest.h>

#include <QFontDatabase>

#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class Fonts : public testing::Test {
 protected:
  Fonts() { testApplication(); }
};

TEST_F(Fonts, AreTheSystems) {
  EXPECT_EQ(systemFont(13).families(),
            QFontDatabase::systemFont(QFontDatabase::GeneralFont).families());
}

TEST_F(Fonts, AreAsLargeAsPointsOfTheScreen) {
  EXPECT_EQ(systemFont(17).pixelSize(), 17);
  EXPECT_EQ(systemFont(0.2).pixelSize(), 1);
}

TEST_F(Fonts, HaveTheirWeight) {
  EXPECT_EQ(systemFont(13).weight(), QFont::Normal);
  EXPECT_EQ(systemFont(13, QFont::Bold).weight(), QFont::Bold);
}

}  // namespace
}  // namespace pallimo::ui::widgets
