// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/close_button.h"

#include <QPainter>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/focus_ring.h"

namespace pallimo::ui::widgets {
namespace {

constexpr double kDiscRadius = 6.5;
constexpr double kCross = 2.2;

}  // namespace

CloseButton::CloseButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setAccessibleName(QStringLiteral("Close"));
  setToolTip(QStringLiteral("Close"));
}

void CloseButton::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

void CloseButton::paintEvent(QPaintEvent*) {
  const Palette& colors = colorsOf(scheme_);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF middle = QRectF(rect()).center();
  painter.setPen(Qt::NoPen);
  painter.setBrush(toColor(underMouse() || isDown() ? colors.controlHover : colors.control));
  painter.drawEllipse(middle, kDiscRadius, kDiscRadius);
  if (hasFocus()) {
    paintFocusRing(painter,
                   QRectF(middle.x() - kDiscRadius, middle.y() - kDiscRadius, 2 * kDiscRadius,
                          2 * kDiscRadius),
                   kDiscRadius, scheme_);
  }
  painter.setPen(QPen(toColor(colors.secondaryText), 1.2, Qt::SolidLine, Qt::RoundCap));
  const QPointF corner(kCross, kCross);
  const QPointF otherCorner(kCross, -kCross);
  painter.drawLine(middle - corner, middle + corner);
  painter.drawLine(middle - otherCorner, middle + otherCorner);
}

void CloseButton::enterEvent(QEnterEvent*) { update(); }

void CloseButton::leaveEvent(QEvent*) { update(); }

}  // namespace pallimo::ui::widgets
