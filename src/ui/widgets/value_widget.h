// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QFont>
#include <QLabel>
#include <QString>

#include "ui/palette.h"
#include "ui/panel.h"

namespace pallimo::ui::widgets {

/// How a value stands in its column.
enum class ValueStyle {
  alone,  ///< a label of one or two lines, a large figure
  shared  ///< one of two values, one above the other
};

/// One figure of a panel with its label, of fixed width. Opaque, on the panel's ground: a new
/// figure repaints these few points alone. Nothing is ever cut: a figure that is too wide is
/// written smaller. A QLabel only to be a piece of text to whoever reads the screen aloud. Main
/// thread.
class ValueWidget final : public QLabel {
 public:
  /// `width` points are the column's; the widget is wider by the gap to the next one.
  ValueWidget(ValueStyle style, double width, QWidget* parent);

  /// Points between two columns.
  static constexpr int kGap = 10;

  /// `unit` as it is spoken.
  void setValue(const PanelValue& value, const QString& unit);
  void setColorScheme(ColorScheme scheme);

  const PanelValue& value() const { return value_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintLabel(QPainter& painter, const QColor& color) const;
  void paintFigure(QPainter& painter, const QColor& color) const;
  double labelWidth() const;
  QFont labelFont() const;

  const ValueStyle style_;
  const double columnWidth_;
  ColorScheme scheme_ = ColorScheme::light;
  PanelValue value_;
};

}  // namespace pallimo::ui::widgets
