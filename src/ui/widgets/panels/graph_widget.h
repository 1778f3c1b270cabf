// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QBasicTimer>
#include <QRect>
#include <QWidget>
#include <functional>
#include <optional>

#include "ui/graph_data.h"
#include "ui/palette.h"
#include "ui/readout.h"
#include "ui/widgets/panels/graph_canvas.h"

namespace pallimo::ui::widgets {

class GraphOverlay;

/// A graph: its box with the lines, the axis labels at the right of it, and while the pointer is
/// over the box what the samples were there. With the keyboard, which Tab brings, the same is told
/// of the newest sample first; Left, Right and End go to others. Where both are, the one that moved
/// last is told of, and the keyboard's sample comes back once the pointer has gone. What is told is
/// asked for again every second, since it grows older. Opaque, on a panel's ground. Main thread.
///
/// A new graph repaints the box alone, and of it what `GraphCanvas` finds new; nothing at all when
/// it looks as before, or while the widget is not on the screen.
class GraphWidget final : public QWidget {
 public:
  /// What was at `x` points from the left edge of a box of that width; nothing where no sample is.
  using ReadoutSource = std::function<std::optional<Readout>(double x, double width)>;

  explicit GraphWidget(QWidget* parent = nullptr);

  /// Points above and below the box, half a label and its shadow of a row.
  static constexpr int kLabelMargin = 5;
  /// Points at the right of the box: a label begins 4 from it, and the longest have three digits,
  /// whose width is the system font's own affair. A panel has this column reach into its padding.
  static constexpr int kLabelRoom = 30;

  /// At least one axis label.
  void setGraph(const GraphView& graph);
  void setColorScheme(ColorScheme scheme);
  void setReadoutSource(ReadoutSource source);

  /// The box, in the widget.
  QRect box() const;
  /// How many graphs were painted, and how many of them wholly. For whoever watches the cost.
  struct Counts {
    int moved = 0;
    int whole = 0;
  };
  const Counts& counts() const { return counts_; }
  const GraphOverlay& overlay() const { return *overlay_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void paintBox(QPainter& painter);
  void paintLabels(QPainter& painter) const;
  void pointAt(QPointF position);
  void goToSample(int sample);
  bool hasKeyboard() const { return isMeant_ && hasFocus(); }
  std::optional<double> toldPlace() const;
  void showReadout();

  GraphView graph_;
  ColorScheme scheme_ = ColorScheme::light;
  GraphCanvas canvas_;
  Counts counts_;
  ReadoutSource readoutSource_;
  std::optional<double> pointer_;  ///< in the box, while it is what is told of
  int keyboardSample_ = 0;         ///< 0 is the newest; told of while the keyboard is here
  /// Somebody meant the keyboard to be here. A window that becomes active gives it to whatever
  /// comes first, which nobody asked for.
  bool isMeant_ = false;
  QBasicTimer ageing_;     ///< runs while a read-out is on the screen
  GraphOverlay* overlay_;  ///< a child
};

}  // namespace pallimo::ui::widgets
