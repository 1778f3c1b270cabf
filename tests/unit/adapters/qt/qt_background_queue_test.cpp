// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_background_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace pallimo::adapters::qt {
namespace {

constexpr std::chrono::seconds kGenerous{20};

TEST(QtBackgroundQueue, ATaskRunsOnAnotherThread) {
  std::promise<std::thread::id> thread;
  auto ran = thread.get_future();
  QtBackgroundQueue queue;
  queue.async([&thread] { thread.set_value(std::this_thread::get_id()); });
  ASSERT_EQ(ran.wait_for(kGenerous), std::future_status::ready);
  EXPECT_NE(ran.get(), std::this_thread::get_id());
}

TEST(QtBackgroundQueue, TheCallerDoesNotWaitForTheTask) {
  std::promise<void> go;
  std::atomic<bool> hasRun = false;
  {
    QtBackgroundQueue queue;
    queue.async([&hasRun, gone = go.get_future().share()] {
      gone.wait();
      hasRun = true;
    });
    EXPECT_FALSE(hasRun);
    go.set_value();
  }
  EXPECT_TRUE(hasRun);
}

TEST(QtBackgroundQueue, ItsEndWaitsForEverythingThatWasQueued) {
  constexpr int kTasks = 100;
  std::atomic<int> ran = 0;
  {
    QtBackgroundQueue queue;
    for (int task = 0; task < kTasks; ++task) queue.async([&ran] { ++ran; });
  }
  EXPECT_EQ(ran, kTasks);
}

TEST(QtBackgroundQueue, ATaskMayQueueAnother) {
  std::promise<void> second;
  auto ran = second.get_future();
  QtBackgroundQueue queue;
  queue.async([&queue, &second] { queue.async([&second] { second.set_value(); }); });
  EXPECT_EQ(ran.wait_for(kGenerous), std::future_status::ready);
}

TEST(QtBackgroundQueue, WhatATaskHoldsIsLetGoByTheEnd) {
  const auto held = std::make_shared<int>(1);
  {
    QtBackgroundQueue queue;
    queue.async([held] {});
  }
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace pallimo::adapters::qt
