// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/value_widget.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/widgets/colors.h"
#include "ui/widgets/figure_text.h"
#include "ui/widgets/fonts.h"

namespace pallimo::ui::widgets {
namespace {

/// Where the texts stand in the widget, and how large they are: points.
struct Style {
  int height;
  double baseline;  ///< of figure and label
  double upperBaseline, lowerBaseline;
  double labelSize, stackedLabelSize;
  double figureSize, smallestFigure;
};

constexpr Style kAlone{22, 15, 9, 17, 10, 8, 15, 8};
constexpr Style kShared{11, 10, 10, 10, 9, 9, 11, 8};

constexpr double kLabelGap = 6;
constexpr double kSmallestLabelGap = 3;
// Of the gap to the next column a wide figure may take all but this.
constexpr double kClear = 4;

const Style& styleOf(ValueStyle style) { return style == ValueStyle::alone ? kAlone : kShared; }

QFont figureFont(double size) { return systemFont(size, QFont::Medium); }

}  // namespace

ValueWidget::ValueWidget(ValueStyle style, double width, QWidget* parent)
    : QLabel(parent), style_(style), columnWidth_(width) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFixedSize(static_cast<int>(std::lround(width)) + kGap, styleOf(style).height);
}

void ValueWidget::setValue(const PanelValue& value, const QString& unit) {
  const QString label = QString::fromStdString(value.labelUp + " " + value.labelDown).trimmed();
  setAccessibleName(label + ' ' + QString::fromStdString(value.value) + ' ' + unit);
  if (value != value_) {
    value_ = value;
    update();
  }
}

void ValueWidget::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

void ValueWidget::paintEvent(QPaintEvent*) {
  const Palette& colors = colorsOf(scheme_);
  QPainter painter(this);
  painter.fillRect(rect(), toColor(colors.panel));
  paintLabel(painter, toColor(colors.secondaryText));
  paintFigure(painter, toColor(colors.series(value_.color)));
}

void ValueWidget::paintLabel(QPainter& painter, const QColor& color) const {
  const Style& style = styleOf(style_);
  painter.setFont(labelFont());
  painter.setPen(color);
  const QString up = QString::fromStdString(value_.labelUp);
  if (value_.labelDown.empty()) {
    painter.drawText(QPointF(0, style.baseline), up);
    return;
  }
  painter.drawText(QPointF(0, style.upperBaseline), up);
  painter.drawText(QPointF(0, style.lowerBaseline), QString::fromStdString(value_.labelDown));
}

void ValueWidget::paintFigure(QPainter& painter, const QColor& color) const {
  const Style& style = styleOf(style_);
  const QString text = QString::fromStdString(value_.value);
  const double room = columnWidth_ + kGap - kClear - labelWidth();
  double size = style.figureSize;
  FigureText figure(figureFont(size));
  while (figure.width(text) + kSmallestLabelGap > room && size > style.smallestFigure) {
    figure = FigureText(figureFont(--size));
  }
  const double gap = std::clamp(room - figure.width(text), kSmallestLabelGap, kLabelGap);
  figure.draw(painter, {labelWidth() + gap, style.baseline}, color, text);
}

double ValueWidget::labelWidth() const {
  const QFontMetricsF metrics(labelFont());
  return std::ceil(std::max(metrics.horizontalAdvance(QString::fromStdString(value_.labelUp)),
                            metrics.horizontalAdvance(QString::fromStdString(value_.labelDown))));
}

QFont ValueWidget::labelFont() const {
  const Style& style = styleOf(style_);
  return systemFont(value_.labelDown.empty() ? style.labelSize : style.stackedLabelSize,
                    QFont::Medium);
}

}  // namespace pallimo::ui::widgets
