// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QPoint>
#include <QWidget>
#include <optional>

namespace pallimo::ui::widgets {

/// A part of a window by which the window is moved, in place of a title bar. Main thread.
class DragArea : public QWidget {
 public:
  explicit DragArea(QWidget* parent) : QWidget(parent) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  /// Where the window was taken hold of, while it is moved here and not by the system.
  std::optional<QPoint> grip_;
};

}  // namespace pallimo::ui::widgets
