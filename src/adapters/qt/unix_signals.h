// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace pallimo::adapters::qt {

/// Brings SIGINT and SIGTERM to the main thread's event loop. Main thread; one at a time.
///
/// Each signal is caught once: a second one ends the process as the system does by itself, so that
/// a run which can't end (its output's reader has stopped reading) is still interruptible.
class UnixSignals {
 public:
  /// `interrupted` runs from the event loop, once a signal.
  explicit UnixSignals(std::function<void()> interrupted);
  /// The signals do again what they did before.
  ~UnixSignals();
  UnixSignals(const UnixSignals&) = delete;
  UnixSignals& operator=(const UnixSignals&) = delete;

 private:
  class Handlers;

  const std::function<void()> interrupted_;
  const std::unique_ptr<Handlers> handlers_;
  QSocketNotifier notifier_;
};

}  // namespace pallimo::adapters::qt
