// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/graph_widget.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <cmath>
#include <utility>

#include "ui/widgets/colors.h"
#include "ui/widgets/graph_overlay.h"
#include "unit/ui/widgets/random_graph.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

constexpr QSize kSize(346, 102);

QImage picture(QWidget& widget, double ratio) {
  QPixmap image((QSizeF(widget.size()) * ratio).toSize());
  image.setDevicePixelRatio(ratio);
  widget.render(&image);
  return image.toImage();
}

/// A widget of its own, held by the fixture so that the application is there before it.
struct Shown {
  Shown() {
    widget.resize(kSize);
    random.addSamples(400);
    widget.setGraph(random.graph());
  }
  GraphWidget widget;
  RandomGraph random{5};
};

class GraphWidgets : public testing::Test {
 protected:
  GraphWidgets() : application_(testApplication()) {}

  GraphWidget& widget() { return shown_.widget; }
  GraphView& graph() { return shown_.random.graph(); }
  void addSample() {
    shown_.random.addSamples(1);
    widget().setGraph(graph());
    settle();
  }
  QImage paintedAnew(double ratio) {
    GraphWidget another;
    another.resize(kSize);
    another.setGraph(graph());
    return picture(another, ratio);
  }
  /// Tells a figure everywhere but in the ten leftmost points.
  void useReadout() {
    widget().setReadoutSource([this](double x, double width) -> std::optional<Readout> {
      asked_.emplace_back(x, width);
      if (x < 10) return std::nullopt;
      return Readout{std::round(x), {{"PKG", "14.31", SeriesColor::blue}}, "12 s ago"};
    });
  }
  void moveTo(QPoint point) {
    QTest::mouseMove(&widget(), point);
    settle();
  }
  bool showsReadout() { return widget().overlay().isVisibleTo(&widget()); }

  QApplication& application_;
  Shown shown_;
  std::vector<std::pair<double, double>> asked_;
};

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

TEST_F(GraphWidgets, BeginTheLabelsFourPointsRightOfTheBox) {
  graph() = {{"8", " "}, {}};
  widget().setGraph(graph());
  const QImage image = picture(widget(), 1);
  int first = 316;
  while (first < image.width() && image.pixelColor(first, 5) == Qt::white) ++first;
  EXPECT_NEAR(first, 320, 2);
}

TEST_F(GraphWidgets, CutNoLabel) {
  for (const char* label : {"120", "5.0", "1000", "9999"}) {
    graph() = {{label, "  "}, {}};
    widget().setGraph(graph());
    const QImage image = picture(widget(), 1);
    for (int y = 0; y < 12; ++y) {
      ASSERT_EQ(image.pixelColor(image.width() - 1, y), QColor(Qt::white)) << label;
    }
  }
}

TEST_F(GraphWidgets, TellWhatIsUnderThePointer) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  EXPECT_TRUE(showsReadout());
  ASSERT_FALSE(asked_.empty());
  EXPECT_EQ(asked_.back(), std::pair(100.0, 316.0));
}

TEST_F(GraphWidgets, TellNothingBesideTheBoxOrWhereNoSampleIs) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  moveTo({330, 50});
  EXPECT_FALSE(showsReadout());
  moveTo({100, 50});
  EXPECT_TRUE(showsReadout());
  moveTo({5, 50});
  EXPECT_FALSE(showsReadout());
}

TEST_F(GraphWidgets, TellNothingOnceThePointerHasGone) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&widget(), &leave);
  EXPECT_FALSE(showsReadout());
}

TEST_F(GraphWidgets, AskAnewForWhatIsUnderTheRestingPointerWhenASampleComes) {
  useReadout();
  showAndWait(widget());
  moveTo({100, 50});
  asked_.clear();
  addSample();
  EXPECT_EQ(asked_, (std::vector{std::pair(100.0, 316.0)}));
}

TEST_F(GraphWidgets, TellNothingWithoutASource) {
  showAndWait(widget());
  moveTo({100, 50});
  EXPECT_FALSE(showsReadout());
}

TEST_F(GraphWidgets, KeepTheGraphAsItIsUnderTheReadout) {
  useReadout();
  showAndWait(widget());
  const auto before = widget().counts();
  moveTo({100, 50});
  moveTo({120, 50});
  EXPECT_EQ(widget().counts().whole, before.whole);
  EXPECT_EQ(widget().counts().moved, before.moved);
}

}  // namespace
}  // namespace pallimo::ui::widgets
