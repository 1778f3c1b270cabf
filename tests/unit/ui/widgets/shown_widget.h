// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <QEvent>
#include <QObject>
#include <QPaintEvent>
#include <QRect>
#include <QTest>
#include <QWidget>
#include <vector>

namespace pallimo::ui::widgets {

/// Shows a widget and waits until it is on the screen and painted.
inline void showAndWait(QWidget& widget) {
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  QTest::qWait(0);
}

/// Lets everything that is queued happen, repaints among it.
inline void settle() {
  for (int i = 0; i < 3; ++i) QTest::qWait(0);
}

/// Writes down what of a widget is repainted.
class PaintLog final : public QObject {
 public:
  explicit PaintLog(QWidget& widget) { widget.installEventFilter(this); }

  const std::vector<QRect>& painted() const { return painted_; }
  void clear() { painted_.clear(); }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      painted_.push_back(static_cast<QPaintEvent*>(event)->rect());
    }
    return false;
  }

 private:
  std::vector<QRect> painted_;
};

}  // namespace pallimo::ui::widgets
