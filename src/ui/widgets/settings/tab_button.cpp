// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/tab_button.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/focus_ring.h"
#include "ui/widgets/basics/fonts.h"
#include "ui/widgets/basics/text.h"

namespace pallimo::ui::widgets {
namespace {

constexpr double kLabelSize = 11;
constexpr int kPadding = 12;
constexpr double kTabRadius = 6;
constexpr double kSymbolMiddle = 15;
constexpr int kLabelTop = 24;
constexpr int kLabelHeight = 16;
constexpr double kStroke = 1.4;

QFont labelFont() { return systemFont(kLabelSize, QFont::Medium); }

// Two rows of a grid.
void paintRows(QPainter& painter, QPointF middle) {
  constexpr double kWidth = 14;
  constexpr double kRow = 5;
  constexpr double kDistance = 7.5;
  for (const double y : {-kDistance / 2, kDistance / 2}) {
    painter.drawRoundedRect(
        QRectF(middle.x() - kWidth / 2, middle.y() + y - kRow / 2, kWidth, kRow), 1.2, 1.2);
  }
}

void paintGear(QPainter& painter, QPointF middle) {
  constexpr int kTeeth = 8;
  constexpr double kBody = 5.6;
  constexpr double kTip = 7.6;
  constexpr double kHub = 2.2;
  constexpr double kStep = 2 * std::numbers::pi / kTeeth;
  const auto at = [middle](double radius, double angle) {
    return middle + radius * QPointF(std::cos(angle), std::sin(angle));
  };
  QPainterPath gear;
  for (int tooth = 0; tooth < kTeeth; ++tooth) {
    const double angle = tooth * kStep;
    const QPointF corners[] = {at(kBody, angle - 0.29 * kStep), at(kTip, angle - 0.17 * kStep),
                               at(kTip, angle + 0.17 * kStep), at(kBody, angle + 0.29 * kStep)};
    for (const QPointF& corner : corners) {
      gear.elementCount() == 0 ? gear.moveTo(corner) : gear.lineTo(corner);
    }
  }
  gear.closeSubpath();
  gear.addEllipse(middle, kHub, kHub);
  painter.drawPath(gear);
}

struct Symbol {
  std::string_view name;
  void (*paint)(QPainter& painter, QPointF middle);
};
constexpr Symbol kSymbols[] = {{"gear", paintGear}, {"rectangle.grid.1x2", paintRows}};

}  // namespace

TabButton::TabButton(const SettingsTabContent& tab, QWidget* parent)
    : QAbstractButton(parent), symbol_(tab.symbol) {
  setText(toText(tab.label));
  setCheckable(true);
  setAutoExclusive(true);
  setFocusPolicy(Qt::TabFocus);
}

void TabButton::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  update();
}

QSize TabButton::sizeHint() const {
  const double label = QFontMetricsF(labelFont()).horizontalAdvance(text());
  return {static_cast<int>(std::ceil(label)) + 2 * kPadding, kHeight};
}

void TabButton::paintEvent(QPaintEvent*) {
  const Palette& colors = colorsOf(scheme_);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (isChecked()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(toColor(colors.controlSelected));
    painter.drawRoundedRect(rect(), kTabRadius, kTabRadius);
  }
  if (hasFocus()) {
    paintFocusRing(painter,
                   QRectF(rect()).adjusted(kFocusRing, kFocusRing, -kFocusRing, -kFocusRing),
                   kTabRadius - kFocusRing, scheme_);
  }
  painter.setPen(QPen(toColor(isChecked() ? colors.accent : colors.secondaryText), kStroke,
                      Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  for (const Symbol& symbol : kSymbols) {
    if (symbol.name == symbol_) symbol.paint(painter, QPointF(width() / 2.0, kSymbolMiddle));
  }
  painter.setFont(labelFont());
  painter.drawText(QRect(0, kLabelTop, width(), kLabelHeight), Qt::AlignCenter, text());
}

void TabButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right) {
    QAbstractButton::keyPressEvent(event);
    return;
  }
  // One step in that direction, and to choose is to go there: there is nothing else to do.
  const auto tabs = parentWidget()->findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly);
  QAbstractButton* next = nullptr;
  for (QAbstractButton* tab : tabs) {
    const int distance = event->key() == Qt::Key_Left ? x() - tab->x() : tab->x() - x();
    const bool isNearer = next == nullptr || std::abs(tab->x() - x()) < std::abs(next->x() - x());
    if (tab->autoExclusive() && distance > 0 && isNearer) {
      next = tab;
    }
  }
  if (next != nullptr) {
    next->setFocus(Qt::TabFocusReason);
    next->click();
  }
}

}  // namespace pallimo::ui::widgets
