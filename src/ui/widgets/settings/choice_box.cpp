// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/choice_box.h"

#include <QAbstractItemView>
#include <QFontMetricsF>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/control_palette.h"
#include "ui/widgets/basics/focus_ring.h"
#include "ui/widgets/basics/fonts.h"

namespace pallimo::ui::widgets {
namespace {

constexpr int kHeight = 24;
constexpr double kBoxRadius = 5;
constexpr int kTextLeft = 11;
constexpr int kTextRight = 24;
// From the right edge to the middle of the two arrow heads, and their sizes.
constexpr double kArrowPlace = 10;
constexpr double kArrowWidth = 2.5;
constexpr double kArrowHeight = 2;
constexpr double kArrowDistance = 2;

}  // namespace

ChoiceBox::ChoiceBox(QWidget* parent) : QComboBox(parent) {
  setFocusPolicy(Qt::TabFocus);
  setFont(systemFont(text_size::kBody));
  setColorScheme(scheme_);
}

void ChoiceBox::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  setPalette(controlPalette(scheme));
  update();
}

QSize ChoiceBox::sizeHint() const {
  double text = 0;
  for (int i = 0; i < count(); ++i) {
    text = std::max(text, QFontMetricsF(font()).horizontalAdvance(itemText(i)));
  }
  return {static_cast<int>(std::ceil(text)) + kTextLeft + kTextRight + 2 * kFocusRing,
          kHeight + 2 * kFocusRing};
}

void ChoiceBox::showPopup() {
  // The list takes a menu's colours, which follow the system and not what was set here.
  view()->setPalette(palette());
  QComboBox::showPopup();
}

void ChoiceBox::paintEvent(QPaintEvent*) {
  const Palette& colors = colorsOf(scheme_);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF frame = QRectF(rect()).adjusted(kFocusRing, kFocusRing, -kFocusRing, -kFocusRing);
  painter.setPen(QPen(toColor(colors.fieldBorder), 1));
  painter.setBrush(toColor(colors.field));
  painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), kBoxRadius, kBoxRadius);
  if (hasFocus()) {
    paintFocusRing(painter, frame, kBoxRadius, scheme_);
  }
  painter.setPen(toColor(colors.text));
  painter.drawText(frame.adjusted(kTextLeft, 0, 0, 0), Qt::AlignVCenter, currentText());
  painter.setPen(
      QPen(toColor(colors.secondaryText), 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  for (const int side : {-1, 1}) {
    const QPointF base(frame.right() - kArrowPlace, frame.center().y() + side * kArrowDistance);
    const QPointF head[] = {base + QPointF(-kArrowWidth, 0), base + QPointF(0, side * kArrowHeight),
                            base + QPointF(kArrowWidth, 0)};
    painter.drawPolyline(head, 3);
  }
}

void ChoiceBox::wheelEvent(QWheelEvent* event) { event->ignore(); }

}  // namespace pallimo::ui::widgets
