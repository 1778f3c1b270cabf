// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QThreadPool>

#include "ports/background_queue.h"

namespace pallimo::adapters::qt {

/// Threads of Qt's for work in the background, of this queue alone. They are made when there is
/// work and go when there has been none for a while. Any thread.
class QtBackgroundQueue final : public ports::BackgroundQueue {
 public:
  /// Waits until everything that was queued has run. Nothing may be queued any more.
  ~QtBackgroundQueue() override;

  void async(std::function<void()> task) override;

 private:
  QThreadPool threads_;
};

}  // namespace pallimo::adapters::qt
