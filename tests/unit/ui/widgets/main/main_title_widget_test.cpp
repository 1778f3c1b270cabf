// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/main_title_widget.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QPixmap>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/fonts.h"
#include "unit/ui/widgets/panels/example_panels.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

class MainTitleWidgets : public testing::Test {
 protected:
  MainTitleWidgets() : application_(testApplication()) {}

  static QImage picture(const MainTitleContent& content, ColorScheme scheme = ColorScheme::light) {
    MainTitleWidget widget(content);
    widget.setColorScheme(scheme);
    widget.resize(widget.sizeHint());
    QPixmap image(widget.size());
    image.fill(Qt::white);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image.toImage();
  }
  /// The last column of some rows that is written to; -1 if none is.
  static int lastWritten(const QImage& image, int top, int bottom) {
    for (int x = image.width() - 1; x >= 0; --x) {
      for (int y = top; y < bottom; ++y) {
        if (image.pixelColor(x, y) != Qt::white) return x;
      }
    }
    return -1;
  }

  QApplication& application_;
};

TEST_F(MainTitleWidgets, AreReadAloud) {
  MainTitleWidget title(exampleTitle());
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&title);
  EXPECT_EQ(spoken->text(QAccessible::Name),
            "Apple M2 Pro (4 E-Cores + 8 P-Cores), Apple M2 Pro (19 GPU-Cores)");
  EXPECT_EQ(spoken->role(), QAccessible::StaticText);
}

TEST_F(MainTitleWidgets, WriteTwoLines) {
  const QImage image = picture(exampleTitle());
  EXPECT_GT(lastWritten(image, 0, 24), 100);
  EXPECT_GT(lastWritten(image, 26, 46), 80);
  EXPECT_LT(lastWritten(image, 26, 46), lastWritten(image, 0, 24));
}

TEST_F(MainTitleWidgets, FollowTheirContent) {
  MainTitleWidget title(exampleTitle());
  title.setContent(longestTitle());
  EXPECT_EQ(title.accessibleName(),
            "Apple M1 Ultra (16 E-Cores + 32 P-Cores), error in CPU type (-1 GPU-Cores)");
}

TEST_F(MainTitleWidgets, CutNothingOfTheLongestName) {
  const QImage image = picture(longestTitle());
  EXPECT_LT(lastWritten(image, 0, 24), image.width() - 1);
  EXPECT_GT(lastWritten(image, 0, 24), 200);
}

TEST_F(MainTitleWidgets, WriteALineSmallerThatWouldNotFit) {
  MainTitleContent content = longestTitle();
  content[0].name.text += " and a name that no chip has";
  const QImage image = picture(content);
  EXPECT_LT(lastWritten(image, 0, 24), image.width() - 1);
}

TEST_F(MainTitleWidgets, WriteNamesInTheTextsColourAndCountsFainter) {
  const QImage image = picture(exampleTitle());
  bool strong = false;
  bool weak = false;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      strong = strong || image.pixelColor(x, y) == toColor(colorsOf(ColorScheme::light).text);
      weak = weak || image.pixelColor(x, y) == toColor(colorsOf(ColorScheme::light).secondaryText);
    }
  }
  EXPECT_TRUE(strong);
  EXPECT_TRUE(weak);
}

TEST_F(MainTitleWidgets, WriteEachTextInTheFontOfItsRole) {
  const struct {
    FontRole role;
    QFont font;
  } fonts[] = {{FontRole::title2Bold, systemFont(17, QFont::Bold)},
               {FontRole::title3Bold, systemFont(15, QFont::Bold)},
               {FontRole::title3Medium, systemFont(15, QFont::Medium)},
               {FontRole::headlineMedium, systemFont(13, QFont::Medium)}};
  const QString text(12, 'n');
  for (const auto& [role, font] : fonts) {
    MainTitleContent content = exampleTitle();
    content[0] = {{text.toStdString(), role}, {"", FontRole::title3Medium}};
    EXPECT_NEAR(lastWritten(picture(content), 0, 24), QFontMetricsF(font).horizontalAdvance(text),
                2.5)
        << static_cast<int>(role);
  }
}

TEST_F(MainTitleWidgets, FollowTheScheme) {
  EXPECT_NE(picture(exampleTitle(), ColorScheme::dark), picture(exampleTitle()));
}

}  // namespace
}  // namespace pallimo::ui::widgets
