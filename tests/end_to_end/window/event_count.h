// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>

namespace pallimo::end_to_end {

/// Counts what happens to a widget.
class EventCount final : public QObject {
 public:
  EventCount(QWidget& widget, QEvent::Type type) : type_(type) { widget.installEventFilter(this); }
  int count() const { return count_; }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == type_) ++count_;
    return false;
  }

 private:
  const QEvent::Type type_;
  int count_ = 0;
};

}  // namespace pallimo::end_to_end
