// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/panel_frame.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

constexpr QSize kSize(60, 50);
constexpr QRect kRect(3, 4, 50, 40);

class PanelFrames : public testing::Test {
 protected:
  PanelFrames() { testApplication(); }

  QImage painted(double ratio, ColorScheme scheme = ColorScheme::dark) {
    QImage image((QSizeF(kSize) * ratio).toSize(), QImage::Format_RGB32);
    image.fill(Qt::green);
    QPainter painter(&image);
    painter.scale(ratio, ratio);
    frame_.paint(painter, kRect, scheme);
    return image;
  }

  PanelFrame frame_;
};

QImage drawnAtOnce(int ratio, ColorScheme scheme) {
  const Palette& colors = colorsOf(scheme);
  QImage image(kSize * ratio, QImage::Format_RGB32);
  image.fill(Qt::green);
  QPainter painter(&image);
  painter.scale(ratio, ratio);
  painter.fillRect(kRect, toColor(colors.window));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(toColor(colors.panelBorder), 1));
  painter.setBrush(toColor(colors.panel));
  painter.drawRoundedRect(QRectF(kRect).adjusted(0.5, 0.5, -0.5, -0.5), 9.5, 9.5);
  return image;
}

/// The largest difference of any colour of any pixel.
int difference(const QImage& a, const QImage& b) {
  int largest = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const QColor one = a.pixelColor(x, y);
      const QColor other = b.pixelColor(x, y);
      largest =
          std::max({largest, std::abs(one.red() - other.red()),
                    std::abs(one.green() - other.green()), std::abs(one.blue() - other.blue())});
    }
  }
  return largest;
}

TEST_F(PanelFrames, LookLikeOneRoundedRectangleAtEveryWholeRatio) {
  for (const int ratio : {1, 2, 3}) {
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
      EXPECT_LE(difference(painted(ratio, scheme), drawnAtOnce(ratio, scheme)), 1) << ratio;
    }
  }
}

TEST_F(PanelFrames, LookTheSameTheSecondTime) {
  const QImage first = painted(2);
  painted(1);
  painted(2, ColorScheme::light);
  EXPECT_EQ(painted(2), first);
}

TEST_F(PanelFrames, PaintNothingBesideTheirRectangle) {
  const QImage image = painted(2);
  for (const QPoint beside : {QPoint(5, 7), QPoint(106, 8), QPoint(50, 88)}) {
    EXPECT_EQ(image.pixelColor(beside), QColor(Qt::green)) << beside.x() << ' ' << beside.y();
  }
}

TEST_F(PanelFrames, AreWholeAtAFractionalRatioToo) {
  const Palette& colors = colorsOf(ColorScheme::dark);
  const QImage image = painted(1.25);
  EXPECT_EQ(image.pixelColor(35, 30), toColor(colors.panel));
  EXPECT_EQ(image.pixelColor(5, 6), toColor(colors.window));
}

}  // namespace
}  // namespace pallimo::ui::widgets
