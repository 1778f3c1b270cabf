// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/basics/drag_area.h"

#include <QMouseEvent>
#include <QWindow>

namespace pallimo::ui::widgets {

void DragArea::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  // The system moves it best: edges that attract, other desktops. Not every one can.
  QWindow* const handle = window()->windowHandle();
  if (handle == nullptr || !handle->startSystemMove()) {
    grip_ = event->globalPosition().toPoint() - window()->pos();
  }
}

void DragArea::mouseMoveEvent(QMouseEvent* event) {
  if (grip_) {
    window()->move(event->globalPosition().toPoint() - *grip_);
  }
}

void DragArea::mouseReleaseEvent(QMouseEvent*) { grip_.reset(); }

}  // namespace pallimo::ui::widgets
