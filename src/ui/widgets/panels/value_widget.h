// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QFont>
#include <QLabel>
#include <QString>

#include "ui/palette.h"
#include "ui/panel.h"
#include "ui/widgets/basics/figure_text.h"

namespace pallimo::ui::widgets {

/// How a value stands in its column.
enum class ValueStyle {
  alone,  ///< a label of one or two lines, a large figure
  shared  ///< one of two values, one above the other
};

/// One figure of a panel with its label, of fixed width. Opaque, on the panel's ground: a new
/// figure repaints these few points alone. A figure that is too wide is written smaller, down to 8
/// points, and in the end takes the label's place: then there is room for a dozen digits. A QLabel
/// only to be a piece of text to whoever reads the screen aloud. Main thread.
class ValueWidget final : public QLabel {
 public:
  /// `width` points are the column's; the widget is wider by the gap to the next one.
  ValueWidget(ValueStyle style, double width, QWidget* parent);

  /// Points between two columns.
  static constexpr int kGap = 10;

  /// `unit` as it is spoken. The figure begins behind `labelRoom` points, or behind the label if
  /// that is longer: so the figures of two values that share a column stand in line.
  void setValue(const PanelValue& value, const QString& unit, double labelRoom = 0);

  /// Points that the value's label takes.
  static double labelWidth(ValueStyle style, const PanelValue& value);
  void setColorScheme(ColorScheme scheme);

  const PanelValue& value() const { return value_; }
  /// Where the figure stands, points from the left edge: what is between them is all of it.
  double figureBegin() const { return figureX_; }
  double figureEnd() const;
  double figureSize() const { return figureSize_; }
  bool showsLabel() const { return showsLabel_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fit();
  bool fitBehind(double begin);
  /// What a new figure repaints: shaping the label's letters would cost as much as all else.
  QRect figureArea() const;
  void paintLabel(QPainter& painter, const QColor& color) const;

  const ValueStyle style_;
  const double columnWidth_;
  ColorScheme scheme_ = ColorScheme::light;
  PanelValue value_;
  double labelRoom_ = 0;
  // How it is written; follows the value.
  QFont labelFont_;
  bool showsLabel_ = true;
  double figureSize_;
  FigureText figure_;
  double figureX_ = 0;
};

}  // namespace pallimo::ui::widgets
