// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/serial_thread.h"

#include <utility>

namespace pallimo::base {

SerialThread::SerialThread() : thread_([this] { run(); }) {}

SerialThread::~SerialThread() {
  {
    MutexLock lock(mutex_);
    isStopping_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void SerialThread::post(std::function<void()> task) {
  {
    MutexLock lock(mutex_);
    if (isStopping_) return;
    tasks_.push_back(std::move(task));
  }
  wake_.notify_one();
}

void SerialThread::run() {
  for (;;) {
    std::function<void()> task;
    {
      MutexLock lock(mutex_);
      while (tasks_.empty() && !isStopping_) wake_.wait(lock);
      if (tasks_.empty()) return;
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    task();
  }
}

}  // namespace pallimo::base
