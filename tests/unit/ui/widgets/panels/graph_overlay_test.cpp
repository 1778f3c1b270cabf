// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_overlay.h"

#include <gtest/gtest.h>

#include <QPixmap>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

constexpr QRect kBox(0, 5, 316, 72);

Readout readoutAtX(double x, std::size_t entries = 4) {
  Readout readout;
  readout.x = x;
  readout.age = "3 min 20 s ago";
  for (std::size_t i = 0; i < entries; ++i) {
    readout.entries.push_back({"CORE AVG", "100.00", SeriesColor::pink});
  }
  return readout;
}

class GraphOverlays : public testing::Test {
 protected:
  GraphOverlays() : application_(testApplication()) {}

  void show(const Readout& readout, ColorScheme scheme = ColorScheme::light) {
    parent_.resize(346, 82);
    overlay_->showReadout(readout, kBox, scheme);
  }
  QImage picture(int ratio = 1) {
    QPixmap image(overlay_->size() * ratio);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    overlay_->render(&image, {}, {}, QWidget::DrawChildren);
    return image.toImage();
  }

  QApplication& application_;
  QWidget parent_;
  GraphOverlay* overlay_ = new GraphOverlay(&parent_);
};

TEST_F(GraphOverlays, LetThePointerThrough) {
  EXPECT_TRUE(overlay_->testAttribute(Qt::WA_TransparentForMouseEvents));
}

TEST_F(GraphOverlays, AreHiddenUntilThereIsSomethingToTell) {
  EXPECT_TRUE(overlay_->isHidden());
  show(readoutAtX(50));
  EXPECT_FALSE(overlay_->isHidden());
}

TEST_F(GraphOverlays, CoverTheirParent) {
  show(readoutAtX(50));
  EXPECT_EQ(overlay_->geometry(), parent_.rect());
}

TEST_F(GraphOverlays, DrawALineOverTheWholeHeightOfTheBox) {
  show(readoutAtX(50, 1));
  const QImage image = picture();
  for (int y = kBox.top(); y <= kBox.bottom(); ++y) {
    ASSERT_NE(image.pixelColor(50, y), QColor(Qt::white)) << y;
  }
  EXPECT_EQ(image.pixelColor(50, kBox.top() - 1), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(48, 10), QColor(Qt::white));
}

TEST_F(GraphOverlays, DrawLineAndBubbleInTheSchemesColoursAtTwiceTheDensity) {
  show(readoutAtX(50, 1), ColorScheme::dark);
  const QImage image = picture(2);
  const Palette& colors = colorsOf(ColorScheme::dark);
  const QColor line = blended(Qt::white, toColor(colors.text), 0.4);
  for (const int x : {100, 101}) {
    EXPECT_NEAR(image.pixelColor(x, 2 * kBox.top()).green(), line.green(), 1) << x;
    EXPECT_NEAR(image.pixelColor(x, 2 * kBox.bottom() + 1).green(), line.green(), 1) << x;
  }
  EXPECT_EQ(image.pixelColor(99, 20), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(102, 20), QColor(Qt::white));
  const QRect bubble = overlay_->bubble();
  EXPECT_EQ(image.pixelColor((bubble.topLeft() + QPoint(bubble.width() / 2, 2)) * 2),
            toColor(colors.window));
}

TEST_F(GraphOverlays, KeepTheLineInTheBoxAtItsRightEdge) {
  show(readoutAtX(316, 1));
  EXPECT_NE(picture().pixelColor(315, 20), QColor(Qt::white));
}

TEST_F(GraphOverlays, WriteTheFiguresRightOfTheLineWhereThereIsRoom) {
  show(readoutAtX(50));
  EXPECT_GT(overlay_->bubble().left(), 50);
}

TEST_F(GraphOverlays, WriteTheFiguresLeftOfTheLineElse) {
  show(readoutAtX(300));
  EXPECT_LT(overlay_->bubble().right(), 300);
}

TEST_F(GraphOverlays, StayInTheBoxWithTheirFiguresWhereverTheLineIs) {
  for (int x = 0; x <= 316; ++x) {
    show(readoutAtX(x));
    ASSERT_TRUE(kBox.contains(overlay_->bubble())) << x;
  }
}

TEST_F(GraphOverlays, WriteFiguresInTheirSeriesColour) {
  show(readoutAtX(50, 1));
  const QImage image = picture(3);
  const QColor pink = toColor(colorsOf(ColorScheme::light).pink);
  const QRect bubble(overlay_->bubble().topLeft() * 3, overlay_->bubble().size() * 3);
  bool found = false;
  for (int y = bubble.top(); y <= bubble.bottom(); ++y) {
    for (int x = bubble.left(); x <= bubble.right(); ++x) {
      found = found || image.pixelColor(x, y) == pink;
    }
  }
  EXPECT_TRUE(found);
}

TEST_F(GraphOverlays, AreALineShorterWithoutAnAge) {
  show(readoutAtX(50));
  const int withAge = overlay_->bubble().height();
  Readout ageless = readoutAtX(50);
  ageless.age = "";
  show(ageless);
  EXPECT_LT(overlay_->bubble().height(), withAge);
}

}  // namespace
}  // namespace pallimo::ui::widgets
