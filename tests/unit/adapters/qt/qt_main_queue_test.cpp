// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_main_queue.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "unit/adapters/qt/event_loop.h"

namespace pallimo::adapters::qt {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

class QtMainQueueTest : public testing::Test {
 protected:
  EventLoop loop_;
};

TEST_F(QtMainQueueTest, TasksRunLaterInTheOrderInWhichTheyWereQueued) {
  QtMainQueue queue(1);
  std::string order;
  for (const char* name : {"a", "b", "c"}) queue.async([&order, name] { order += name; });
  EXPECT_EQ(order, "");
  EXPECT_TRUE(loop_.runUntil([&] { return order.size() == 3; }));
  EXPECT_EQ(order, "abc");
}

TEST_F(QtMainQueueTest, TasksOfAnotherThreadRunOnTheMainThread) {
  QtMainQueue queue(1);
  std::vector<std::thread::id> threads;
  std::thread other([&] {
    queue.async([&] { threads.push_back(std::this_thread::get_id()); });
    queue.after(1ms, [&] { threads.push_back(std::this_thread::get_id()); });
  });
  EXPECT_TRUE(loop_.runUntil([&] { return threads.size() == 2; }));
  other.join();
  const std::vector<std::thread::id> expected(2, std::this_thread::get_id());
  EXPECT_EQ(threads, expected);
}

TEST_F(QtMainQueueTest, ADelayPasses) {
  QtMainQueue queue(1);
  const auto start = steady_clock::now();
  bool isDone = false;
  queue.after(50ms, [&] { isDone = true; });
  EXPECT_TRUE(loop_.runUntil([&] { return isDone; }));
  EXPECT_GE(steady_clock::now() - start, 49ms);
}

TEST_F(QtMainQueueTest, WithASpeedDelaysPassSoMuchFaster) {
  QtMainQueue queue(100);
  const auto start = steady_clock::now();
  bool isDone = false;
  queue.after(50s, [&] { isDone = true; });
  EXPECT_TRUE(loop_.runUntil([&] { return isDone; }));
  EXPECT_GE(steady_clock::now() - start, 499ms);
}

TEST_F(QtMainQueueTest, ATimerFiresEveryInterval) {
  QtMainQueue queue(100);
  const auto start = steady_clock::now();
  int ticks = 0;
  const auto timer = queue.every(1s, [&] { ++ticks; });
  EXPECT_TRUE(loop_.runUntil([&] { return ticks >= 20; }));
  EXPECT_GE(steady_clock::now() - start, 199ms);
}

TEST_F(QtMainQueueTest, ATimerThatIsDestroyedFiresNoMore) {
  QtMainQueue queue(1);
  int ticks = 0;
  auto timer = queue.every(1ms, [&] { ++ticks; });
  EXPECT_TRUE(loop_.runUntil([&] { return ticks == 1; }));
  timer.reset();
  bool isLater = false;
  queue.after(20ms, [&] { isLater = true; });
  EXPECT_TRUE(loop_.runUntil([&] { return isLater; }));
  EXPECT_EQ(ticks, 1);
}

TEST_F(QtMainQueueTest, ATickMayDestroyItsOwnTimer) {
  QtMainQueue queue(1);
  std::unique_ptr<ports::RepeatingTimer> timer;
  std::string seen;
  timer = queue.every(1ms, [&, text = std::string("captured")] {
    timer.reset();
    seen = text;
  });
  EXPECT_TRUE(loop_.runUntil([&] { return !seen.empty(); }));
  EXPECT_EQ(seen, "captured");
}

TEST_F(QtMainQueueTest, TasksOfAQueueThatIsGoneAreNotRun) {
  bool hasRun = false;
  {
    QtMainQueue queue(1);
    queue.async([&] { hasRun = true; });
    queue.after(1ms, [&] { hasRun = true; });
  }
  QtMainQueue other(1);
  bool isLater = false;
  other.after(20ms, [&] { isLater = true; });
  EXPECT_TRUE(loop_.runUntil([&] { return isLater; }));
  EXPECT_FALSE(hasRun);
}

}  // namespace
}  // namespace pallimo::adapters::qt
