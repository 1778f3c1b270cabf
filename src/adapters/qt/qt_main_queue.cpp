// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_main_queue.h"

#include <QMetaObject>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

namespace pallimo::adapters::qt {

namespace {

using std::chrono::milliseconds;

// A coarse timer of one second fires every 0.95 s at first, to be in step with other timers; there
// are none that it could save a wake-up together with, and a tick a second is to be one.
constexpr Qt::TimerType kTimerType = Qt::PreciseTimer;

class QtRepeatingTimer final : public ports::RepeatingTimer {
 public:
  QtRepeatingTimer(milliseconds interval, std::function<void()> tick)
      : tick_(std::make_shared<const std::function<void()>>(std::move(tick))) {
    timer_.setTimerType(kTimerType);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
      // The tick may end its own timer.
      const auto running = tick_;
      (*running)();
    });
    timer_.start(interval);
  }

 private:
  const std::shared_ptr<const std::function<void()>> tick_;
  QTimer timer_;
};

}  // namespace

QtMainQueue::QtMainQueue(double speed) : speed_(speed) {}

void QtMainQueue::async(std::function<void()> task) {
  QMetaObject::invokeMethod(&context_, std::move(task), Qt::QueuedConnection);
}

void QtMainQueue::after(milliseconds delay, std::function<void()> task) {
  // A timer belongs to the thread that starts it, so it is started on the main thread.
  async([this, delay = shortened(delay), task = std::move(task)] {
    QTimer::singleShot(delay, kTimerType, &context_, task);
  });
}

std::unique_ptr<ports::RepeatingTimer> QtMainQueue::every(milliseconds interval,
                                                          std::function<void()> tick) {
  return std::make_unique<QtRepeatingTimer>(shortened(interval), std::move(tick));
}

milliseconds QtMainQueue::shortened(milliseconds nominal) const {
  const double count = std::round(static_cast<double>(nominal.count()) / speed_);
  return std::max(milliseconds(1), milliseconds(static_cast<milliseconds::rep>(count)));
}

}  // namespace pallimo::adapters::qt
