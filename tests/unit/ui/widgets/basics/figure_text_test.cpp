// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/figure_text.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "ui/widgets/basics/fonts.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class FigureTexts : public testing::Test {
 protected:
  FigureTexts() : application_(testApplication()) {}

  static QImage drawn(const FigureText& figure, const QString& text) {
    QImage image(80, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    figure.draw(painter, {5, 20}, Qt::red, text);
    return image;
  }

  /// The columns that have colour, from the first to the last.
  static std::pair<int, int> extent(const QImage& image) {
    int first = image.width();
    int last = -1;
    for (int x = 0; x < image.width(); ++x) {
      for (int y = 0; y < image.height(); ++y) {
        if (image.pixelColor(x, y) != Qt::white) {
          first = std::min(first, x);
          last = x;
        }
      }
    }
    return {first, last};
  }

  QApplication& application_;
  const FigureText figure_{systemFont(15)};
};

TEST_F(FigureTexts, GiveEveryDigitTheSameWidth) {
  const double width = figure_.width("00.00");
  for (char digit = '0'; digit <= '9'; ++digit) {
    EXPECT_EQ(figure_.width(QString("00.00").replace('0', digit)), width) << digit;
  }
}

TEST_F(FigureTexts, GrowByADigitAtATime) {
  EXPECT_DOUBLE_EQ(figure_.width("1000") - figure_.width("100"), figure_.width("7"));
}

TEST_F(FigureTexts, KeepTheirWordsAndSigns) {
  EXPECT_GT(figure_.width("nan"), 0);
  EXPECT_GT(figure_.width("-1"), figure_.width("1"));
}

TEST_F(FigureTexts, AreDrawnWithinTheirWidth) {
  for (const char* text : {"14.31", "1234.56", "-1", "nan", "100.0"}) {
    const auto [first, last] = extent(drawn(figure_, text));
    EXPECT_GE(first, 4) << text;
    EXPECT_LE(last, 5 + figure_.width(text) + 1) << text;
    EXPECT_GT(last - first, figure_.width(text) / 2) << text;
  }
}

TEST_F(FigureTexts, KeepTheLastDigitWhereItIsWhenTheFirstOnesChange) {
  const QImage wide = drawn(figure_, "88.0");
  const QImage narrow = drawn(figure_, "11.0");
  const int end = 5 + static_cast<int>(figure_.width("88."));
  const QRect last(end, 0, 80 - end, 30);
  EXPECT_EQ(wide.copy(last), narrow.copy(last));
  EXPECT_NE(wide, narrow);
}

}  // namespace
}  // namespace pallimo::ui::widgets
