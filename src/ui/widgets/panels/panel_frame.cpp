// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/panel_frame.h"

#include <QPainter>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/whole_pixels.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kCorner = PanelFrame::kCornerRadius;

void paintRound(QPainter& painter, const QRect& rect, ColorScheme scheme) {
  const Palette& colors = colorsOf(scheme);
  painter.fillRect(rect, toColor(colors.window));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(toColor(colors.panelBorder), 1));
  painter.setBrush(toColor(colors.panel));
  painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), kCorner - 0.5,
                          kCorner - 0.5);
}

// All but the corners.
void paintStraight(QPainter& painter, const QRect& rect, const Palette& colors) {
  const QRect across = rect.adjusted(kCorner, 0, -kCorner, 0);
  const QRect down = rect.adjusted(0, kCorner, 0, -kCorner);
  const QColor border = toColor(colors.panelBorder);
  const QColor panel = toColor(colors.panel);
  painter.fillRect(QRect(across.topLeft(), QSize(across.width(), 1)), border);
  painter.fillRect(QRect(across.bottomLeft(), QSize(across.width(), 1)), border);
  painter.fillRect(QRect(down.topLeft(), QSize(1, down.height())), border);
  painter.fillRect(QRect(down.topRight(), QSize(1, down.height())), border);
  painter.fillRect(across.adjusted(0, 1, 0, -1), panel);
  const QSize side(kCorner - 1, down.height());
  painter.fillRect(QRect(down.topLeft() + QPoint(1, 0), side), panel);
  painter.fillRect(QRect(down.topRight() - QPoint(kCorner - 1, 0), side), panel);
}

}  // namespace

void PanelFrame::paint(QPainter& painter, const QRect& rect, ColorScheme scheme) {
  const QTransform transform = painter.deviceTransform();
  if (!hasWholePixels(transform)) {
    paintRound(painter, rect, scheme);
    return;
  }
  keepCorners(static_cast<int>(transform.m11()), scheme);
  paintStraight(painter, rect, colorsOf(scheme));
  paintCorners(painter, rect);
}

void PanelFrame::paintCorners(QPainter& painter, const QRect& rect) const {
  const int side = kCorner * ratio_;
  // Pixel by pixel: an image that says how dense it is would be stretched.
  painter.scale(1.0 / ratio_, 1.0 / ratio_);
  for (const QPoint corner : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
    const QPoint place(corner.x() == 0 ? rect.left() : rect.right() + 1 - kCorner,
                       corner.y() == 0 ? rect.top() : rect.bottom() + 1 - kCorner);
    painter.drawImage(place * ratio_, corners_, QRect(corner * side, QSize(side, side)));
  }
  painter.scale(ratio_, ratio_);
}

void PanelFrame::keepCorners(int ratio, ColorScheme scheme) {
  if (ratio == ratio_ && scheme == scheme_) {
    return;
  }
  ratio_ = ratio;
  scheme_ = scheme;
  corners_ = QImage(QSize(2 * kCorner, 2 * kCorner) * ratio, QImage::Format_RGB32);
  QPainter painter(&corners_);
  painter.scale(ratio, ratio);
  paintRound(painter, QRect(0, 0, 2 * kCorner, 2 * kCorner), scheme);
}

}  // namespace pallimo::ui::widgets
