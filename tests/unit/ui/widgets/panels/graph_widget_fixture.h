// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ui/widgets/panels/graph_overlay.h"
#include "ui/widgets/panels/graph_widget.h"
#include "unit/ui/widgets/panels/random_graph.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {

inline QImage picture(QWidget& widget, double ratio) {
  QPixmap image((QSizeF(widget.size()) * ratio).toSize());
  image.setDevicePixelRatio(ratio);
  widget.render(&image);
  return image.toImage();
}

/// A widget of its own, held by the fixture so that the application is there before it.
struct ShownGraph {
  ShownGraph() {
    widget.resize(QSize(346, 102));
    random.addSamples(400);
    widget.setGraph(random.graph());
  }
  GraphWidget widget;
  RandomGraph random{5};
};

/// A graph widget with more samples than it has points.
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
    another.resize(QSize(346, 102));
    another.setGraph(graph());
    return picture(another, ratio);
  }
  /// Tells a figure everywhere but in the ten leftmost points.
  void useReadout() {
    widget().setReadoutSource([this](double x, double width) -> std::optional<Readout> {
      asked_.emplace_back(x, width);
      if (x < 10) return std::nullopt;
      return Readout{std::round(x), {{"PKG", "14.31", SeriesColor::blue}}, age_};
    });
  }
  void moveTo(QPoint point) {
    QTest::mouseMove(&widget(), point);
    settle();
  }
  /// The widget is on the screen, and Tab has brought the keyboard there.
  void showWithKeyboard() {
    showAndWait(widget());
    widget().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widget()));
    widget().clearFocus();
    widget().setFocus(Qt::TabFocusReason);
  }
  void press(Qt::Key key) { QTest::keyClick(&widget(), key); }
  double readoutX() { return widget().overlay().readout().x; }
  bool showsReadout() { return widget().overlay().isVisibleTo(&widget()); }

  QApplication& application_;
  ShownGraph shown_;
  std::vector<std::pair<double, double>> asked_;
  std::string age_ = "12 s ago";
};

}  // namespace pallimo::ui::widgets
