// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/value_widget.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/figure_text.h"
#include "ui/widgets/basics/fonts.h"
#include "ui/widgets/basics/spoken.h"

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

// Values of one pattern are equally wide.
std::string patternOf(const PanelValue& value) {
  std::string pattern = value.labelUp + '\n' + value.labelDown + '\n' + value.value;
  std::ranges::replace_if(
      pattern, [](char c) { return c >= '0' && c <= '9'; }, '0');
  return pattern;
}

QFont labelFont(ValueStyle style, const PanelValue& value) {
  const bool isStacked = !value.labelDown.empty();
  return systemFont(isStacked ? styleOf(style).stackedLabelSize : styleOf(style).labelSize,
                    QFont::Medium);
}

}  // namespace

ValueWidget::ValueWidget(ValueStyle style, double width, QWidget* parent)
    : QLabel(parent),
      style_(style),
      columnWidth_(width),
      figureSize_(styleOf(style).figureSize),
      figure_(figureFont(figureSize_)) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFixedSize(static_cast<int>(std::lround(width)) + kGap, styleOf(style).height);
}

void ValueWidget::setValue(const PanelValue& value, const QString& unit, double labelRoom) {
  const QString label = QString::fromStdString(value.labelUp + " " + value.labelDown).trimmed();
  nameAloud(*this, label + ' ' + QString::fromStdString(value.value) + ' ' + unit);
  if (value != value_ || labelRoom != labelRoom_) {
    const bool sameWidths = labelRoom == labelRoom_ && patternOf(value) == patternOf(value_);
    value_ = value;
    labelRoom_ = labelRoom;
    if (sameWidths) {
      update(figureArea());
    } else {
      fit();
      update();
    }
  }
}

double ValueWidget::labelWidth(ValueStyle style, const PanelValue& value) {
  const QFontMetricsF metrics(labelFont(style, value));
  return std::ceil(std::max(metrics.horizontalAdvance(QString::fromStdString(value.labelUp)),
                            metrics.horizontalAdvance(QString::fromStdString(value.labelDown))));
}

double ValueWidget::figureEnd() const {
  return figureX_ + figure_.width(QString::fromStdString(value_.value));
}

void ValueWidget::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

QRect ValueWidget::figureArea() const {
  const int begin = static_cast<int>(std::floor(figureX_)) - 1;
  return rect().adjusted(std::max(begin, 0), 0, 0, 0);
}

void ValueWidget::paintEvent(QPaintEvent* event) {
  const Palette& colors = colorsOf(scheme_);
  QPainter painter(this);
  painter.fillRect(event->rect(), toColor(colors.panel));
  if (showsLabel_ && !figureArea().contains(event->rect())) {
    paintLabel(painter, toColor(colors.secondaryText));
  }
  figure_.draw(painter, {figureX_, styleOf(style_).baseline}, toColor(colors.series(value_.color)),
               QString::fromStdString(value_.value));
}

void ValueWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) {
    fit();  // the system's font is another
  }
  QLabel::changeEvent(event);
}

void ValueWidget::paintLabel(QPainter& painter, const QColor& color) const {
  const Style& style = styleOf(style_);
  painter.setFont(labelFont_);
  painter.setPen(color);
  const QString up = QString::fromStdString(value_.labelUp);
  if (value_.labelDown.empty()) {
    painter.drawText(QPointF(0, style.baseline), up);
    return;
  }
  painter.drawText(QPointF(0, style.upperBaseline), up);
  painter.drawText(QPointF(0, style.lowerBaseline), QString::fromStdString(value_.labelDown));
}

void ValueWidget::fit() {
  labelFont_ = labelFont(style_, value_);
  const double label = std::max(labelRoom_, labelWidth(style_, value_));
  showsLabel_ = fitBehind(label + kSmallestLabelGap);
  if (!showsLabel_) {
    fitBehind(0);
    return;
  }
  const double rest = columnWidth_ + kGap - kClear - figureEnd();
  figureX_ += std::clamp(rest, 0.0, kLabelGap - kSmallestLabelGap);
}

bool ValueWidget::fitBehind(double begin) {
  const Style& style = styleOf(style_);
  figureX_ = begin;
  figureSize_ = style.figureSize;
  figure_ = FigureText(figureFont(figureSize_));
  const double end = columnWidth_ + kGap - kClear;
  while (figureEnd() > end && figureSize_ > style.smallestFigure) {
    figure_ = FigureText(figureFont(--figureSize_));
  }
  return figureEnd() <= end;
}

}  // namespace pallimo::ui::widgets
