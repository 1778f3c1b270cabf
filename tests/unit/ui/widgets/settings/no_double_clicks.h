// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QApplication>

namespace pallimo::ui::widgets {

/// As long as it lives, a click that follows another one is not taken for that one's second half.
class NoDoubleClicks {
 public:
  NoDoubleClicks() { QApplication::setDoubleClickInterval(0); }
  ~NoDoubleClicks() { QApplication::setDoubleClickInterval(interval_); }
  NoDoubleClicks(const NoDoubleClicks&) = delete;
  NoDoubleClicks& operator=(const NoDoubleClicks&) = delete;

 private:
  const int interval_ = QApplication::doubleClickInterval();
};

}  // namespace pallimo::ui::widgets
