// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/toggle_row.h"

#include <QPainter>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/focus_ring.h"
#include "ui/widgets/basics/fonts.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kSwitchWidth = 32;
constexpr int kSwitchHeight = 18;
constexpr double kKnob = 15;
constexpr double kKnobInset = (kSwitchHeight - kKnob) / 2;
constexpr int kLeastWidth = 200;

}  // namespace

ToggleRow::ToggleRow(const QString& label, QWidget* parent) : QAbstractButton(parent) {
  setText(label);
  setCheckable(true);
  setFocusPolicy(Qt::TabFocus);
}

void ToggleRow::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

QSize ToggleRow::sizeHint() const { return {kLeastWidth, kHeight}; }

void ToggleRow::paintEvent(QPaintEvent*) {
  const Palette& colors = colorsOf(scheme_);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(systemFont(text_size::kBody));
  painter.setPen(toColor(colors.text));
  painter.drawText(rect(), Qt::AlignVCenter, text());

  const QRectF track(width() - kFocusRing - kSwitchWidth, (height() - kSwitchHeight) / 2.0,
                     kSwitchWidth, kSwitchHeight);
  painter.setPen(Qt::NoPen);
  painter.setBrush(toColor(isChecked() ? colors.accent : colors.controlSelected));
  painter.drawRoundedRect(track, kSwitchHeight / 2.0, kSwitchHeight / 2.0);
  const double x = isChecked() ? track.right() - kKnobInset - kKnob : track.left() + kKnobInset;
  painter.setBrush(toColor(colors.accentText));
  painter.drawEllipse(QRectF(x, track.top() + kKnobInset, kKnob, kKnob));
  if (hasFocus()) {
    paintFocusRing(painter, track, kSwitchHeight / 2.0, scheme_);
  }
}

}  // namespace pallimo::ui::widgets
