// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_painting.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <limits>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

constexpr QSize kBox(40, 60);
constexpr ColorScheme kScheme = ColorScheme::light;

// On white: 0.1 of black.
const QColor kGrid(230, 230, 230);

class GraphPainting : public testing::Test {
 protected:
  GraphPainting() { testApplication(); }

  QImage painted(const std::vector<double>& data, int ratio = 1) {
    graph_.datas = {{"", data, SeriesColor::blue}};
    return paintedAt(ratio);
  }
  QImage paintedAt(int ratio, ColorScheme scheme = kScheme) {
    QImage image(kBox * ratio, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.scale(ratio, ratio);
    paintColumns(painter, graph_, kBox, scheme, {0, kBox.width()});
    return image;
  }
  static bool isBlank(const QImage& image, const QRect& part) {
    for (int y = part.top(); y <= part.bottom(); ++y) {
      for (int x = part.left(); x <= part.right(); ++x) {
        if (const QColor color = image.pixelColor(x, y); color != Qt::white && color != kGrid) {
          return false;
        }
      }
    }
    return true;
  }
  static bool isBlank(const QImage& image) { return isBlank(image, image.rect()); }

  GraphView graph_{{"3", "2", "1", "0"}, {}};
};

TEST_F(GraphPainting, OutlinesTheBoxAlongItsPixels) {
  const QImage image = paintedAt(1);
  for (int x = 0; x < kBox.width(); ++x) {
    ASSERT_EQ(image.pixelColor(x, 0), kGrid);
    ASSERT_EQ(image.pixelColor(x, kBox.height() - 1), kGrid);
  }
  for (int y = 0; y < kBox.height(); ++y) {
    ASSERT_EQ(image.pixelColor(0, y), kGrid);
    ASSERT_EQ(image.pixelColor(kBox.width() - 1, y), kGrid);
  }
}

TEST_F(GraphPainting, DrawsAGridLineAtEachBandWithoutBlurringIt) {
  const QImage image = paintedAt(1);
  for (int y = 1; y < kBox.height() - 1; ++y) {
    EXPECT_EQ(image.pixelColor(20, y), y == 20 || y == 40 ? kGrid : QColor(Qt::white)) << y;
  }
}

TEST_F(GraphPainting, DrawsLinesOnePointWideAtTwiceTheDensity) {
  const QImage image = paintedAt(2);
  for (const int first : {0, 39, 79, 118}) {
    EXPECT_EQ(image.pixelColor(40, first), kGrid) << first;
    EXPECT_EQ(image.pixelColor(40, first + 1), kGrid) << first;
  }
  EXPECT_EQ(image.pixelColor(40, 2), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(0, 60), kGrid);
  EXPECT_EQ(image.pixelColor(1, 60), kGrid);
  EXPECT_EQ(image.pixelColor(2, 60), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(78, 60), kGrid);
}

TEST_F(GraphPainting, ShowsOutlineAndGridAtATenthInBothSchemes) {
  for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
    const QColor ground = toColor(colorsOf(scheme).panel);
    const QColor grid = toColor(colorsOf(scheme).grid);
    const QImage image = paintedAt(1, scheme);
    EXPECT_EQ(image.pixelColor(20, 10), ground);
    for (const QPoint on : {QPoint(20, 0), QPoint(20, 20), QPoint(20, 59), QPoint(0, 10)}) {
      const double expected = ground.green() + 0.1 * (grid.green() - ground.green());
      EXPECT_NEAR(image.pixelColor(on).green(), expected, 1) << on.x() << ' ' << on.y();
    }
  }
}

TEST_F(GraphPainting, DrawsTheOutlineAloneForOneLabel) {
  graph_.axisLabels = {"0"};
  const QImage image = paintedAt(1);
  for (int y = 1; y < kBox.height() - 1; ++y) {
    ASSERT_EQ(image.pixelColor(20, y), QColor(Qt::white)) << y;
  }
  EXPECT_EQ(image.pixelColor(20, 0), kGrid);
}

TEST_F(GraphPainting, DrawsNothingForASeriesOfNoneOrOneValue) {
  EXPECT_TRUE(isBlank(painted(std::vector<double>())));
  EXPECT_TRUE(isBlank(painted(std::vector{0.5})));
}

TEST_F(GraphPainting, BeginsAtTheRightEdgeAndGoesLeftAPointAValue) {
  const QImage image = painted({0.5, 0.5, 0.5, 0.5});
  const QColor blue = toColor(colorsOf(kScheme).blue);
  for (int x = 37; x < 40; ++x) EXPECT_NE(image.pixelColor(x, 29), kGrid) << x;
  EXPECT_TRUE(isBlank(image, {0, 0, 37, 60}));
  // One and a half points around 30: the row above and the row below, each three quarters.
  EXPECT_EQ(image.pixelColor(38, 29), image.pixelColor(38, 30));
  EXPECT_NEAR(image.pixelColor(38, 29).red(), 255 - (255 - blue.red()) * 0.75, 2);
}

TEST_F(GraphPainting, DrawsSeriesOneAndAHalfPointsWide) {
  const QImage image = painted({0.5, 0.5, 0.5, 0.5, 0.5}, 2);
  const double blue = toColor(colorsOf(kScheme).blue).red();
  double pixels = 0;
  for (int y = 50; y < 70; ++y) pixels += (255 - image.pixelColor(74, y).red()) / (255 - blue);
  EXPECT_NEAR(pixels, 3, 0.05);
}

TEST_F(GraphPainting, PutsOneOnTheTopEdgeAndZeroOnTheBottomEdge) {
  const QImage top = painted({1, 1, 1});
  EXPECT_FALSE(isBlank(top, {38, 0, 2, 1}));
  EXPECT_TRUE(isBlank(top, {0, 1, 40, 59}));
  const QImage bottom = painted({0, 0, 0});
  EXPECT_FALSE(isBlank(bottom, {38, 59, 2, 1}));
  EXPECT_TRUE(isBlank(bottom, {0, 0, 40, 59}));
}

TEST_F(GraphPainting, LeavesOutWhatLiesOutsideTheBox) {
  EXPECT_TRUE(isBlank(painted({2, 2, 2})));
  EXPECT_TRUE(isBlank(painted({-1, -1, -1})));
  EXPECT_TRUE(isBlank(painted({1e300, 1e308, 1e300})));
}

TEST_F(GraphPainting, CrossesTheBoxOnTheWayFromFarAboveToFarBelow) {
  const QImage image = painted({1e300, -1e300, 0.5});
  for (int y = 0; y < kBox.height(); ++y) {
    ASSERT_FALSE(isBlank(image, {37, y, 3, 1})) << y;
  }
}

TEST_F(GraphPainting, ShowsWhatOfALineOutsideTheBoxReachesIntoIt) {
  const double above = 1 + 1.0 / kBox.height();
  const QImage image = painted({above, 1, above});
  EXPECT_FALSE(isBlank(image, {38, 0, 2, 1}));
  EXPECT_TRUE(isBlank(image, {0, 2, 40, 58}));
}

TEST_F(GraphPainting, BreaksTheLineWhereAValueIsMissing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const QImage image = painted({0.5, 0.5, nan, 0.5, 0.5, 0.5});
  EXPECT_FALSE(isBlank(image, {39, 28, 1, 4}));
  EXPECT_TRUE(isBlank(image, {37, 28, 2, 4}));
  EXPECT_FALSE(isBlank(image, {35, 28, 2, 4}));
}

TEST_F(GraphPainting, DrawsLaterSeriesOverEarlierOnes) {
  graph_.datas = {{"", {0.5, 0.5, 0.5}, SeriesColor::blue},
                  {"", {0.51, 0.51, 0.51}, SeriesColor::pink}};
  const QColor both = paintedAt(4).pixelColor(156, 118);
  graph_.datas.erase(graph_.datas.begin());
  EXPECT_EQ(both, paintedAt(4).pixelColor(156, 118));
}

TEST_F(GraphPainting, TakesEachSeriesColourFromTheScheme) {
  for (const SeriesColor color : {SeriesColor::blue, SeriesColor::cyan, SeriesColor::orange,
                                  SeriesColor::pink, SeriesColor::purple}) {
    graph_.datas = {{"", {0.5, 0.5, 0.5}, color}};
    EXPECT_EQ(paintedAt(2).pixelColor(78, 60), toColor(colorsOf(kScheme).series(color)));
  }
}

}  // namespace
}  // namespace pallimo::ui::widgets
