// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <functional>

namespace pallimo::adapters::qt {

/// A Qt event loop for one test.
class EventLoop {
 public:
  /// Runs the loop until `isDone` says so; false when that has not happened within a generous time.
  bool runUntil(const std::function<bool()>& isDone) {
    constexpr std::chrono::seconds kGenerous{20};
    bool isLate = false;
    QTimer::singleShot(kGenerous, &application_, [&] { isLate = true; });
    while (!isDone() && !isLate) application_.processEvents(QEventLoop::WaitForMoreEvents);
    return isDone();
  }

 private:
  int argumentCount_ = 1;
  char name_[5] = "test";
  char* arguments_[2] = {name_, nullptr};
  QCoreApplication application_{argumentCount_, arguments_};
};

}  // namespace pallimo::adapters::qt
