// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QObject>

#include "ports/main_queue.h"

namespace pallimo::adapters::qt {

/// The main queue on Qt's event loop. Made and destroyed on the main thread, while there is a
/// QCoreApplication; tasks that are still queued then are dropped unrun. Nothing may be queued any
/// more when it is destroyed.
///
/// With a speed of X every delay and interval passes X times faster.
class QtMainQueue final : public ports::MainQueue {
 public:
  explicit QtMainQueue(double speed);

  void async(std::function<void()> task) override;
  void after(std::chrono::milliseconds delay, std::function<void()> task) override;
  [[nodiscard]] std::unique_ptr<ports::RepeatingTimer> every(std::chrono::milliseconds interval,
                                                             std::function<void()> tick) override;

 private:
  std::chrono::milliseconds shortened(std::chrono::milliseconds nominal) const;

  const double speed_;
  QObject context_;  ///< lives on the main thread; what is queued runs there
};

}  // namespace pallimo::adapters::qt
