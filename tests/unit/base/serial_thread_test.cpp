// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/serial_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <numeric>
#include <optional>
#include <thread>
#include <vector>

namespace pallimo::base {
namespace {

constexpr std::chrono::seconds kDeadline{60};

/// Waits until everything posted so far has run.
void drain(SerialThread& thread) {
  const auto ran = std::make_shared<std::promise<void>>();
  thread.post([ran] { ran->set_value(); });
  ASSERT_EQ(ran->get_future().wait_for(kDeadline), std::future_status::ready);
}

TEST(SerialThread, RunsTasksOnOneThreadOfItsOwn) {
  SerialThread thread;
  std::vector<std::thread::id> ranOn;
  for (int task = 0; task < 3; ++task) {
    thread.post([&] { ranOn.push_back(std::this_thread::get_id()); });
  }
  drain(thread);
  ASSERT_EQ(ranOn.size(), 3u);
  EXPECT_NE(ranOn[0], std::this_thread::get_id());
  EXPECT_EQ(ranOn[1], ranOn[0]);
  EXPECT_EQ(ranOn[2], ranOn[0]);
}

TEST(SerialThread, RunsTasksInTheOrderInWhichTheyWerePosted) {
  SerialThread thread;
  std::vector<int> ran;
  std::vector<int> posted(1000);
  std::iota(posted.begin(), posted.end(), 0);
  for (const int task : posted) thread.post([&ran, task] { ran.push_back(task); });
  drain(thread);
  EXPECT_EQ(ran, posted);
}

TEST(SerialThread, DoesNotWaitForATaskItTakes) {
  std::promise<void> release;
  auto seen = std::future_status::timeout;
  SerialThread thread;
  thread.post([&] { seen = release.get_future().wait_for(kDeadline); });
  release.set_value();  // reached in time only if post() returned while the task was still waiting
  drain(thread);
  EXPECT_EQ(seen, std::future_status::ready);
}

TEST(SerialThread, RunsATaskToItsEndBeforeTheNext) {
  SerialThread thread;
  std::promise<void> release;
  const auto released = release.get_future().share();
  std::atomic<bool> isFirstOver = false;
  bool sawFirstOver = false;
  thread.post([&] {
    released.wait_for(kDeadline);
    isFirstOver = true;
  });
  thread.post([&] { sawFirstOver = isFirstOver; });
  release.set_value();
  drain(thread);
  EXPECT_TRUE(sawFirstOver);
}

TEST(SerialThread, TakesTasksFromItsOwnTasks) {
  std::promise<void> inner;
  SerialThread thread;
  thread.post([&] { thread.post([&] { inner.set_value(); }); });
  EXPECT_EQ(inner.get_future().wait_for(kDeadline), std::future_status::ready);
}

TEST(SerialThread, TakesTasksFromSeveralThreadsEachInItsOwnOrder) {
  SerialThread thread;
  constexpr int kTasks = 1000;
  std::vector<int> ran[2];
  const auto post = [&](int who) {
    for (int task = 0; task < kTasks; ++task) {
      thread.post([&ran, who, task] { ran[who].push_back(task); });
    }
  };
  std::thread other([&] { post(1); });
  post(0);
  other.join();
  drain(thread);
  std::vector<int> expected(kTasks);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(ran[0], expected);
  EXPECT_EQ(ran[1], expected);
}

TEST(SerialThread, RunsWhatIsQueuedBeforeItEnds) {
  int ran = 0;
  {
    SerialThread thread;
    for (int task = 0; task < 100; ++task) thread.post([&] { ++ran; });
  }
  EXPECT_EQ(ran, 100);
}

TEST(SerialThread, DropsWhatIsPostedWhileItEnds) {
  std::optional<SerialThread> thread(std::in_place);
  std::promise<void> ending;
  std::atomic<bool> hasLateRun = false;
  auto late = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = late;
  SerialThread* const same = &*thread;
  // The task keeps posting until one of its posts is refused, which only happens once the
  // destructor has begun: a refused task is destroyed at once, an accepted one is kept.
  thread->post([&, same] {
    ending.get_future().wait_for(kDeadline);
    for (;;) {
      auto token = std::make_shared<int>(0);
      const std::weak_ptr<int> kept = token;
      same->post([token = std::move(token)] { static_cast<void>(token); });
      if (kept.expired()) break;
    }
    same->post([&hasLateRun, late = std::move(late)] { hasLateRun = true; });
  });
  ending.set_value();
  thread.reset();
  EXPECT_FALSE(hasLateRun);
  EXPECT_TRUE(watched.expired());
}

TEST(SerialThread, EndsAtOnceWithoutTasks) { const SerialThread thread; }

TEST(SerialThread, LetsGoOfATaskOnceItHasRun) {
  SerialThread thread;
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watched = held;
  thread.post([held = std::move(held)] { static_cast<void>(held); });
  drain(thread);
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace pallimo::base
