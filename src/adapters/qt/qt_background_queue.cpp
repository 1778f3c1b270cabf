// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_background_queue.h"

#include <utility>

namespace pallimo::adapters::qt {

QtBackgroundQueue::~QtBackgroundQueue() { threads_.waitForDone(); }

void QtBackgroundQueue::async(std::function<void()> task) { threads_.start(std::move(task)); }

}  // namespace pallimo::adapters::qt
