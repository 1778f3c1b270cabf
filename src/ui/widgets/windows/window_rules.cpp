// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/windows/window_rules.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>
#include <utility>

namespace pallimo::ui::widgets {
namespace {

bool isRuled(const QWidget& widget) {
  return widget.isWindow() && widget.windowType() != Qt::Popup &&
         widget.windowType() != Qt::ToolTip;
}

}  // namespace

WindowRules::WindowRules(Rules rules) : rules_(std::move(rules)) { qApp->installEventFilter(this); }

bool WindowRules::eventFilter(QObject* object, QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
    case QEvent::WindowStateChange:
    case QEvent::UpdateRequest:
      if (object->isWidgetType() && isRuled(*static_cast<QWidget*>(object))) {
        rules_(*static_cast<QWidget*>(object));
      }
      break;
    default:
      break;
  }
  return false;
}

}  // namespace pallimo::ui::widgets
