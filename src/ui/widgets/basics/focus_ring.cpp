// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/focus_ring.h"

#include <QPainter>

#include "ui/widgets/basics/colors.h"

namespace pallimo::ui::widgets {
namespace {

constexpr double kOpacity = 0.6;

}  // namespace

void paintFocusRing(QPainter& painter, const QRectF& control, double radius, ColorScheme scheme) {
  QColor color = toColor(colorsOf(scheme).accent);
  color.setAlphaF(kOpacity);
  const double middle = kFocusRing / 2.0;
  painter.setPen(QPen(color, kFocusRing));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(control.adjusted(-middle, -middle, middle, middle), radius + middle,
                          radius + middle);
}

}  // namespace pallimo::ui::widgets
