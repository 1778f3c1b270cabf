// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/help_on_focus.h"

#include <QFocusEvent>
#include <QToolTip>
#include <QWidget>
#include <utility>

namespace pallimo::ui::widgets {

HelpOnFocus::HelpOnFocus(QWidget& control, QWidget& helped, IsNeeded isNeeded)
    : QObject(&control), helped_(helped), isNeeded_(std::move(isNeeded)) {
  control.installEventFilter(this);
}

bool HelpOnFocus::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    const auto reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
      show();
    }
  } else if (event->type() == QEvent::FocusOut || event->type() == QEvent::KeyPress) {
    QToolTip::hideText();
  }
  return false;
}

void HelpOnFocus::show() const {
  if (!isNeeded_ || isNeeded_()) {
    QToolTip::showText(helped_.mapToGlobal(QPoint(0, 0)), helped_.toolTip(), &helped_);
  }
}

}  // namespace pallimo::ui::widgets
