// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/value_widget.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

QImage picture(QWidget& widget) {
  QPixmap image(widget.size());
  widget.render(&image);
  return image.toImage();
}

bool hasColor(const QImage& image, const QColor& color) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y) == color) return true;
    }
  }
  return false;
}

PanelValue power(const std::string& value) { return {"PKG", "", value, SeriesColor::blue}; }

class ValueWidgets : public testing::Test {
 protected:
  ValueWidgets() : application_(testApplication()) {}

  QApplication& application_;
  ValueWidget value_{ValueStyle::alone, 65, nullptr};
};

TEST_F(ValueWidgets, AreAsWideAsTheirColumnAndTheGapToTheNext) {
  EXPECT_EQ(value_.width(), 65 + ValueWidget::kGap);
}

TEST_F(ValueWidgets, AreHalfAsHighWhenTheyShareAColumn) {
  EXPECT_EQ(ValueWidget(ValueStyle::shared, 90, nullptr).height() * 2, value_.height());
}

TEST_F(ValueWidgets, AreReadAloudWithTheirUnit) {
  value_.setValue(power("14.31"), "watts");
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&value_);
  EXPECT_EQ(spoken->text(QAccessible::Name), "PKG 14.31 watts");
  EXPECT_EQ(spoken->role(), QAccessible::StaticText);
}

TEST_F(ValueWidgets, AreReadAloudWithBothLinesOfTheirLabel) {
  value_.setValue({"CORE", "AVG", "52.37", SeriesColor::cyan}, "degrees Celsius");
  EXPECT_EQ(value_.accessibleName(), "CORE AVG 52.37 degrees Celsius");
}

TEST_F(ValueWidgets, WriteTheUpperLabelAboveTheLowerOne) {
  const auto labels = [&](const char* up, const char* down) {
    value_.setValue({up, down, "1", SeriesColor::blue}, "");
    return picture(value_).copy(0, 0, 12, value_.height());
  };
  const QRect upper(0, 0, 12, 10);
  const QRect lower(0, 10, 12, 12);
  EXPECT_EQ(labels("CORE", "AVG").copy(upper), labels("CORE", "MAX").copy(upper));
  EXPECT_NE(labels("CORE", "AVG").copy(lower), labels("CORE", "MAX").copy(lower));
  EXPECT_NE(labels("CORE", "AVG").copy(upper), labels("GPU", "AVG").copy(upper));
  EXPECT_EQ(labels("CORE", "AVG").copy(lower), labels("GPU", "AVG").copy(lower));
}

TEST_F(ValueWidgets, WriteTheFigureInItsColour) {
  value_.setValue(power("14.31"), "watts");
  EXPECT_TRUE(hasColor(picture(value_), toColor(colorsOf(ColorScheme::light).blue)));
  value_.setColorScheme(ColorScheme::dark);
  EXPECT_TRUE(hasColor(picture(value_), toColor(colorsOf(ColorScheme::dark).blue)));
}

TEST_F(ValueWidgets, AreRepaintedWhenTheValueChangesAndOnlyThen) {
  value_.setValue(power("14.31"), "watts");
  showAndWait(value_);
  PaintLog log(value_);
  value_.setValue(power("14.31"), "watts");
  settle();
  EXPECT_TRUE(log.painted().empty());
  value_.setValue(power("14.32"), "watts");
  settle();
  EXPECT_EQ(log.painted().size(), 1u);
}

TEST_F(ValueWidgets, LeaveTheLabelAloneWhenTheFigureAloneChanges) {
  value_.setValue(power("14.31"), "watts");
  showAndWait(value_);
  PaintLog log(value_);
  value_.setValue(power("18.88"), "watts");
  settle();
  ASSERT_EQ(log.painted().size(), 1u);
  EXPECT_GT(log.painted()[0].left(), ValueWidget::labelWidth(ValueStyle::alone, power("")));
  EXPECT_LT(log.painted()[0].left(), value_.figureBegin());
  value_.setValue(power("118.88"), "watts");
  settle();
  ASSERT_EQ(log.painted().size(), 2u);
  EXPECT_EQ(log.painted()[1], value_.rect());
}

TEST_F(ValueWidgets, LookTheSameAfterAChangeAsMadeAnew) {
  value_.setValue(power("14.31"), "watts");
  showAndWait(value_);
  value_.setValue(power("20.88"), "watts");
  settle();
  const QImage changed = value_.screen()->grabWindow(value_.winId()).toImage();
  value_.repaint();
  settle();
  EXPECT_EQ(changed, value_.screen()->grabWindow(value_.winId()).toImage());
  EXPECT_TRUE(hasColor(changed, toColor(colorsOf(ColorScheme::light).blue)));
}

TEST_F(ValueWidgets, DoNotDanceWhenDigitsChange) {
  value_.setValue(power("14.31"), "watts");
  const double begin = value_.figureBegin();
  const double end = value_.figureEnd();
  for (const char* text : {"11.11", "88.88", "70.04"}) {
    value_.setValue(power(text), "watts");
    EXPECT_EQ(value_.figureBegin(), begin) << text;
    EXPECT_EQ(value_.figureEnd(), end) << text;
  }
}

TEST_F(ValueWidgets, WriteALongFigureSmallerAndAShortOneLargeAgain) {
  value_.setValue(power("14.31"), "watts");
  const double usual = value_.figureSize();
  value_.setValue(power("1234.56"), "watts");
  EXPECT_LT(value_.figureSize(), usual);
  value_.setValue(power("4.31"), "watts");
  EXPECT_EQ(value_.figureSize(), usual);
}

TEST_F(ValueWidgets, BeginFiguresThatShareAColumnInOneLine) {
  ValueWidget upper(ValueStyle::shared, 90, nullptr);
  ValueWidget lower(ValueStyle::shared, 90, nullptr);
  upper.setValue({"E-CORE", "", "50.00", SeriesColor::blue}, "percent", 50);
  lower.setValue({"P-CORE", "", "7.25", SeriesColor::cyan}, "percent", 50);
  EXPECT_EQ(upper.figureBegin(), lower.figureBegin());
}

struct Widest {
  ValueStyle style;
  double width;
  PanelValue value;
};

class WidestValue : public testing::TestWithParam<Widest> {
 protected:
  WidestValue() : application_(testApplication()) {}
  QApplication& application_;
};

INSTANTIATE_TEST_SUITE_P(
    Columns, WidestValue,
    testing::Values(Widest{ValueStyle::alone, 65, power("14.31")},
                    Widest{ValueStyle::alone, 65, power("100.00")},
                    Widest{ValueStyle::alone, 65, power("1234.56")},
                    Widest{ValueStyle::alone, 65, power("-1")},
                    Widest{ValueStyle::alone, 65, power("nan")},
                    Widest{ValueStyle::alone, 75, {"ANE", "", "1234.56", SeriesColor::orange}},
                    Widest{ValueStyle::alone, 80, {"P-CORE", "", "10.00", SeriesColor::cyan}},
                    Widest{ValueStyle::alone, 80, {"E-CORE", "", "4294.97", SeriesColor::blue}},
                    Widest{ValueStyle::alone, 85, {"CORE", "AVG", "1000.00", SeriesColor::cyan}},
                    Widest{ValueStyle::alone, 65, {"CORE", "MIN", "-1000", SeriesColor::purple}},
                    Widest{ValueStyle::alone, 75, {"CORE", "", "100.00", SeriesColor::cyan}},
                    Widest{ValueStyle::alone, 70, {"GPU", "", "100.00", SeriesColor::pink}},
                    Widest{ValueStyle::shared, 90, {"P-CORE", "", "100.00", SeriesColor::cyan}},
                    Widest{ValueStyle::shared, 90, {"E-CORE", "", "-nan", SeriesColor::blue}}));

TEST_P(WidestValue, IsWholeAndLeavesItsLabelAlone) {
  const Widest& widest = GetParam();
  ValueWidget widget(widest.style, widest.width, nullptr);
  widget.setValue(widest.value, "");
  EXPECT_TRUE(widget.showsLabel());
  EXPECT_GT(widget.figureBegin(), ValueWidget::labelWidth(widest.style, widest.value));
  EXPECT_LE(widget.figureEnd(), widget.width() - 2);
}

TEST_F(ValueWidgets, GiveTheLabelsPlaceToAFigureThatIsLongerThanAnyOther) {
  value_.setValue(power("12345678.90"), "watts");
  EXPECT_FALSE(value_.showsLabel());
  EXPECT_LE(value_.figureEnd(), value_.width());
  EXPECT_EQ(value_.accessibleName(), "PKG 12345678.90 watts");
}

}  // namespace
}  // namespace pallimo::ui::widgets
