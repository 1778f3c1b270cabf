// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_overlay.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/figure_text.h"
#include "ui/widgets/basics/focus_ring.h"
#include "ui/widgets/basics/fonts.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kPadding = 5;
constexpr int kRowHeight = 12;
constexpr int kColumnGap = 8;
constexpr int kDistance = 6;  // from the line
constexpr double kBubbleRadius = 5;
constexpr double kLineOpacity = 0.4;

QFont labelFont() { return systemFont(text_size::kFootnote); }
QFont figureFont() { return systemFont(text_size::kFootnote, QFont::Medium); }

double rowBaseline(int row) { return kPadding + row * kRowHeight + 9.5; }

}  // namespace

GraphOverlay::GraphOverlay(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

void GraphOverlay::showReadout(const Readout& readout, const QRect& box, ColorScheme scheme) {
  readout_ = readout;
  box_ = box;
  scheme_ = scheme;
  setGeometry(parentWidget()->rect());
  update();
  show();
}

QRect GraphOverlay::bubble() const {
  const QSize size = bubbleSize();
  const int line = box_.x() + static_cast<int>(std::lround(readout_.x));
  const bool fitsRight = line + kDistance + size.width() <= box_.right();
  const int x = fitsRight ? line + kDistance : line - kDistance - size.width();
  const int y = box_.y() + std::max(0, (box_.height() - size.height()) / 2);
  return {QPoint(std::max(box_.x(), x), y), size};
}

QSize GraphOverlay::bubbleSize() const {
  const QFontMetricsF labels(labelFont());
  const FigureText figures(figureFont());
  double width = labels.horizontalAdvance(QString::fromStdString(readout_.age));
  for (const ReadoutEntry& entry : readout_.entries) {
    width = std::max(width, labels.horizontalAdvance(QString::fromStdString(entry.label)) +
                                kColumnGap + figures.width(QString::fromStdString(entry.value)));
  }
  const auto rows = static_cast<int>(readout_.entries.size()) + (readout_.age.empty() ? 0 : 1);
  return {static_cast<int>(std::ceil(width)) + 2 * kPadding, rows * kRowHeight + 2 * kPadding};
}

void GraphOverlay::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!readout_.entries.empty()) {
    paintReadout(painter);
  }
  if (hasFocusRing_) {
    // Within the box, which has no room around it.
    painter.setRenderHint(QPainter::Antialiasing);
    paintFocusRing(painter, QRectF(box_).adjusted(kFocusRing, kFocusRing, -kFocusRing, -kFocusRing),
                   0, scheme_);
  }
}

void GraphOverlay::paintReadout(QPainter& painter) const {
  const Palette& colors = colorsOf(scheme_);
  QColor line = toColor(colors.text);
  line.setAlphaF(kLineOpacity);
  const double x = std::min(box_.x() + readout_.x, box_.x() + box_.width() - 1.0);
  painter.fillRect(QRectF(x, box_.y(), 1, box_.height()), line);

  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(toColor(colors.divider), 1));
  painter.setBrush(toColor(colors.window));
  painter.drawRoundedRect(QRectF(bubble()).adjusted(0.5, 0.5, -0.5, -0.5), kBubbleRadius,
                          kBubbleRadius);
  paintEntries(painter);
}

void GraphOverlay::paintEntries(QPainter& painter) const {
  const Palette& colors = colorsOf(scheme_);
  const QRect frame = bubble();
  const FigureText figures(figureFont());
  painter.setFont(labelFont());
  int row = 0;
  for (const ReadoutEntry& entry : readout_.entries) {
    const double y = frame.y() + rowBaseline(row++);
    const QString value = QString::fromStdString(entry.value);
    painter.setPen(toColor(colors.secondaryText));
    painter.drawText(QPointF(frame.x() + kPadding, y), QString::fromStdString(entry.label));
    const double end = frame.x() + frame.width() - kPadding;
    figures.draw(painter, {end - figures.width(value), y}, toColor(colors.series(entry.color)),
                 value);
  }
  painter.setPen(toColor(colors.secondaryText));
  painter.drawText(QPointF(frame.x() + kPadding, frame.y() + rowBaseline(row)),
                   QString::fromStdString(readout_.age));
}

}  // namespace pallimo::ui::widgets
