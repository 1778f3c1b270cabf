// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/push_button.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <cmath>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/focus_ring.h"
#include "ui/widgets/basics/fonts.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kAccentHeight = 26;
constexpr int kPlainHeight = 22;
constexpr int kAccentPadding = 14;
constexpr int kPlainPadding = 12;
constexpr double kButtonRadius = 5;
// What a press takes of the button's colour.
constexpr double kPressed = 0.15;

}  // namespace

PushButton::PushButton(ButtonLook look, QWidget* parent) : QAbstractButton(parent), look_(look) {
  setFocusPolicy(Qt::TabFocus);
}

void PushButton::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

QFont PushButton::textFont() const {
  return systemFont(text_size::kBody, look_ == ButtonLook::accent ? QFont::Medium : QFont::Normal);
}

QSize PushButton::sizeHint() const {
  const bool isAccent = look_ == ButtonLook::accent;
  const double textWidth = QFontMetricsF(textFont()).horizontalAdvance(text());
  const int padding = isAccent ? kAccentPadding : kPlainPadding;
  return {static_cast<int>(std::ceil(textWidth)) + 2 * (padding + kFocusRing),
          (isAccent ? kAccentHeight : kPlainHeight) + 2 * kFocusRing};
}

void PushButton::paintEvent(QPaintEvent*) {
  const Palette& colors = colorsOf(scheme_);
  const bool isAccent = look_ == ButtonLook::accent;
  const QColor text = toColor(isAccent ? colors.accentText : colors.text);
  QColor ground = toColor(isAccent ? colors.accent : colors.field);
  if (isDown()) {
    ground = blended(ground, toColor(colors.grid), kPressed);
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = QRectF(rect()).adjusted(kFocusRing, kFocusRing, -kFocusRing, -kFocusRing);
  painter.setPen(QPen(isAccent ? ground : toColor(colors.fieldBorder), 1));
  painter.setBrush(ground);
  painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), kButtonRadius, kButtonRadius);
  if (hasFocus()) {
    paintFocusRing(painter, frame, kButtonRadius, scheme_);
  }
  painter.setFont(textFont());
  painter.setPen(text);
  painter.drawText(frame, Qt::AlignCenter, this->text());
}

void PushButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QAbstractButton::keyPressEvent(event);
}

}  // namespace pallimo::ui::widgets
