// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_widget.h"

#include <gtest/gtest.h>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/fonts.h"
#include "unit/ui/widgets/panels/graph_widget_fixture.h"

namespace pallimo::ui::widgets {
namespace {

TEST_F(GraphWidgets, LeaveRoomForTheLabelsAroundTheBox) {
  EXPECT_EQ(widget().box(), QRect(0, 5, 316, 92));
}

TEST_F(GraphWidgets, AreOpaque) { EXPECT_TRUE(widget().testAttribute(Qt::WA_OpaquePaintEvent)); }

TEST_F(GraphWidgets, LookTheSameAfterManySamplesAsPaintedAnew) {
  for (const double ratio : {1.0, 2.0}) {
    for (int sample = 0; sample < 20; ++sample) {
      addSample();
      ASSERT_EQ(picture(widget(), ratio), paintedAnew(ratio)) << sample << " at " << ratio;
    }
  }
}

TEST_F(GraphWidgets, MoveTheGraphWhenASampleComes) {
  showAndWait(widget());
  const auto before = widget().counts();
  addSample();
  EXPECT_EQ(widget().counts().moved, before.moved + 1);
  EXPECT_EQ(widget().counts().whole, before.whole);
}

TEST_F(GraphWidgets, RepaintTheBoxAloneWhenASampleComes) {
  showAndWait(widget());
  PaintLog log(widget());
  addSample();
  EXPECT_EQ(log.painted(), std::vector{widget().box()});
}

TEST_F(GraphWidgets, RepaintNothingWhenTheGraphLooksAsBefore) {
  showAndWait(widget());
  PaintLog log(widget());
  for (GraphData& series : graph().datas) {
    series.id += "another";
    series.data.back() += 0.5;  // left of the box
  }
  widget().setGraph(graph());
  settle();
  EXPECT_TRUE(log.painted().empty());
}

TEST_F(GraphWidgets, RepaintTheLabelsWhenTheyChange) {
  showAndWait(widget());
  PaintLog log(widget());
  graph().axisLabels = {"60", "50", "40", "30", "20", "10", "0"};
  addSample();
  EXPECT_EQ(log.painted(), std::vector{widget().rect()});
}

TEST_F(GraphWidgets, RepaintEverythingInAnotherScheme) {
  showAndWait(widget());
  const auto before = widget().counts();
  widget().setColorScheme(ColorScheme::dark);
  settle();
  EXPECT_EQ(widget().counts().whole, before.whole + 1);
  EXPECT_EQ(picture(widget(), 1).pixelColor(340, 50), toColor(colorsOf(ColorScheme::dark).panel));
}

TEST_F(GraphWidgets, PaintNothingWhileHidden) {
  showAndWait(widget());
  widget().hide();
  PaintLog log(widget());
  for (int sample = 0; sample < 5; ++sample) addSample();
  EXPECT_TRUE(log.painted().empty());
}

TEST_F(GraphWidgets, CatchUpInOneStepWhenTheyAreShownAgain) {
  showAndWait(widget());
  widget().hide();
  for (int sample = 0; sample < 5; ++sample) addSample();
  const auto before = widget().counts();
  showAndWait(widget());
  settle();
  EXPECT_EQ(widget().counts().moved, before.moved + 1);
  EXPECT_EQ(picture(widget(), 1), paintedAnew(1));
}

TEST_F(GraphWidgets, PaintEverythingEachTimeAtADensityThatIsNoWholeNumber) {
  const auto before = widget().counts();
  const QImage image = picture(widget(), 1.5);
  addSample();
  EXPECT_NE(picture(widget(), 1.5), image);
  EXPECT_EQ(picture(widget(), 1.5), paintedAnew(1.5));
  EXPECT_EQ(widget().counts().whole, before.whole + 3);
  EXPECT_EQ(widget().counts().moved, before.moved);
}

/// The lengths of the runs of the grid's colour along a line of pixels.
std::vector<int> gridRuns(const QImage& image, QPoint from, QPoint step) {
  const Palette& colors = colorsOf(ColorScheme::light);
  const QColor grid = blended(toColor(colors.panel), toColor(colors.grid), 0.1);
  std::vector<int> runs;
  bool inRun = false;
  for (QPoint at = from; image.rect().contains(at); at += step) {
    const bool isGrid = image.pixelColor(at) == grid;
    if (isGrid && !inRun) runs.push_back(0);
    if (isGrid) ++runs.back();
    inRun = isGrid;
  }
  return runs;
}

TEST_F(GraphWidgets, KeepTheGridCrispWhereverBetweenThePixelsTheyStand) {
  for (const double ratio : {1.25, 1.5, 1.75, 2.5}) {
    for (const QPoint place : {QPoint(0, 0), QPoint(1, 1), QPoint(2, 3), QPoint(13, 53)}) {
      QWidget parent;
      parent.resize(380, 170);
      auto* child = new GraphWidget(&parent);
      child->setGeometry(QRect(place, widget().size()));
      child->setGraph({{"30", "25", "20", "15", "10", "5", "0"}, {}});
      const QImage image = picture(parent, ratio);
      const QPoint inABand = ((QPointF(place) + QPointF(100, 12)) * ratio).toPoint();
      const int width = static_cast<int>(ratio);
      EXPECT_EQ(gridRuns(image, {inABand.x(), 0}, {0, 1}), std::vector<int>(7, width))
          << ratio << " at " << place.y();
      EXPECT_EQ(gridRuns(image, {0, inABand.y()}, {1, 0}), std::vector<int>(2, width))
          << ratio << " at " << place.x();
    }
  }
}

TEST_F(GraphWidgets, StayWithinTheBoxAtADensityThatIsNoWholeNumber) {
  graph() = {{"1", "0"}, {{"", {3, -3, 3, -3}, SeriesColor::blue}}};
  widget().setGraph(graph());
  const QImage image = picture(widget(), 1.5);
  for (int x = 0; x < widget().box().width() * 3 / 2; ++x) {
    ASSERT_EQ(image.pixelColor(x, 3), QColor(Qt::white)) << x;
    ASSERT_EQ(image.pixelColor(x, image.height() - 4), QColor(Qt::white)) << x;
  }
}

TEST_F(GraphWidgets, PaintTheirGroundAloneWhenThereIsNoRoomForABox) {
  widget().resize(20, 8);
  EXPECT_EQ(picture(widget(), 1).pixelColor(10, 4), QColor(Qt::white));
}

// Rows of the label column in which something is written.
std::vector<int> writtenRows(const QImage& image, int column) {
  std::vector<int> rows;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = column; x < image.width(); ++x) {
      if (image.pixelColor(x, y) != Qt::white) {
        rows.push_back(y);
        break;
      }
    }
  }
  return rows;
}

/// Whether something is written in the upper fifth of a column.
bool isWritten(const QImage& image, int column) {
  for (int y = 0; y < image.height() / 5; ++y) {
    if (image.pixelColor(column, y) != Qt::white) return true;
  }
  return false;
}

TEST_F(GraphWidgets, WriteEachLabelInTheMiddleOfItsGridLine) {
  for (const std::size_t position : {0u, 1u, 2u}) {
    graph() = {{"", "", ""}, {}};
    graph().axisLabels = {"a", "b", "c"};
    for (std::size_t i = 0; i < 3; ++i) {
      graph().axisLabels[i] = i == position ? "8" : std::string(i + 1, ' ');
    }
    widget().setGraph(graph());
    const auto rows = writtenRows(picture(widget(), 1), 320);
    ASSERT_FALSE(rows.empty());
    const double line = widget().box().top() + static_cast<double>(position) * 46;
    EXPECT_NEAR((rows.front() + rows.back() + 1) / 2.0, line, 1.0) << position;
  }
}

TEST_F(GraphWidgets, WriteTheLabelsInTheSystemsFootnoteFont) {
  graph() = {{"8", " "}, {}};
  widget().setGraph(graph());
  const auto rows = writtenRows(picture(widget(), 4), 4 * 317);
  ASSERT_FALSE(rows.empty());
  const double height = QFontMetricsF(systemFont(10)).tightBoundingRect("8").height();
  EXPECT_NEAR((rows.back() - rows.front() + 1) / 4.0, height, 1);
}

TEST_F(GraphWidgets, WriteEqualLabelsAtTheFirstOnesPlace) {
  graph() = {{"8", " ", "8"}, {}};
  widget().setGraph(graph());
  const QImage twice = picture(widget(), 1);
  graph() = {{"8", " ", "  "}, {}};
  widget().setGraph(graph());
  const QImage once = picture(widget(), 1);
  const QRect below(316, 50, 30, 52);
  EXPECT_EQ(twice.copy(below), once.copy(below));
  EXPECT_NE(twice.copy(QRect(316, 0, 30, 12)), twice.copy(QRect(316, 90, 30, 12)));
}

TEST_F(GraphWidgets, BeginTheLabelsFourPointsRightOfTheBox) {
  graph() = {{"8", " "}, {}};
  widget().setGraph(graph());
  const QImage image = picture(widget(), 4);
  int first = 4 * 317;
  while (first < image.width() && !isWritten(image, first)) ++first;
  const double bearing = QFontMetricsF(systemFont(10)).tightBoundingRect("8").left();
  EXPECT_NEAR(first / 4.0, 320 + bearing, 0.75);
}

TEST_F(GraphWidgets, CutNoLabel) {
  for (const char* label : {"120", "5.0", "800"}) {
    graph() = {{label, "  "}, {}};
    widget().setGraph(graph());
    const QImage image = picture(widget(), 1);
    for (int y = 0; y < 12; ++y) {
      ASSERT_EQ(image.pixelColor(image.width() - 1, y), QColor(Qt::white)) << label;
    }
  }
}

}  // namespace
}  // namespace pallimo::ui::widgets
