// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/more_button.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <utility>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/basics/menu_building.h"

namespace pallimo::ui::widgets {
namespace {

constexpr double kPlateRadius = 6;
constexpr double kDotRadius = 2.5;
constexpr double kDotDistance = 8.5;
constexpr int kMenuDistance = 4;

}  // namespace

MoreButton::MoreButton(Rows rows, QWidget* parent)
    : QAbstractButton(parent), rows_(std::move(rows)) {
  setFixedSize(kSize);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(QStringLiteral("More"));
  setToolTip(QStringLiteral("More"));
  connect(this, &QAbstractButton::clicked, this, &MoreButton::toggleMenu);
}

void MoreButton::setColorScheme(ColorScheme scheme) {
  scheme_ = scheme;
  if (menu_) {
    fillMenu(*menu_, rows_(), scheme_);
  }
  update();
}

void MoreButton::refreshMenu() {
  if (menu_) {
    widgets::refreshMenu(*menu_, rows_(), scheme_);
  }
}

void MoreButton::toggleMenu() {
  if (menu_) {
    menu_->close();
    return;
  }
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  // The press that closes the menu is used up: on the button it would open the menu again.
  menu->setAttribute(Qt::WA_NoMouseReplay);
  fillMenu(*menu, rows_(), scheme_);
  menu_ = menu;
  connect(menu, &QMenu::aboutToHide, this, [this] {
    menu_ = nullptr;
    update();
  });
  const QPoint below = mapToGlobal(QPoint(width(), height() + kMenuDistance));
  menu->popup(below - QPoint(menu->sizeHint().width(), 0));
}

void MoreButton::paintEvent(QPaintEvent*) {
  const Palette& colors = colorsOf(scheme_);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool isLit = underMouse() || isDown() || menu_;
  painter.setPen(showsFocus_ ? QPen(toColor(colors.accent), 2) : QPen(Qt::NoPen));
  painter.setBrush(toColor(isLit ? colors.controlHover : colors.control));
  const double inset = showsFocus_ ? 1 : 0;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kPlateRadius,
                          kPlateRadius);
  painter.setPen(Qt::NoPen);
  painter.setBrush(toColor(colors.secondaryText));
  const QPointF middle = QRectF(rect()).center();
  for (int dot = -1; dot <= 1; ++dot) {
    painter.drawEllipse(middle + QPointF(dot * kDotDistance, 0), kDotRadius, kDotRadius);
  }
}

void MoreButton::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
      click();
      return;
    default:
      QAbstractButton::keyPressEvent(event);
  }
}

void MoreButton::focusInEvent(QFocusEvent* event) {
  showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  QAbstractButton::focusInEvent(event);
}

void MoreButton::focusOutEvent(QFocusEvent* event) {
  showsFocus_ = false;
  QAbstractButton::focusOutEvent(event);
}

void MoreButton::enterEvent(QEnterEvent*) { update(); }

void MoreButton::leaveEvent(QEvent*) { update(); }

}  // namespace pallimo::ui::widgets
