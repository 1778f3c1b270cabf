// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/observable.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace pallimo::base {
namespace {

class Model final : public Observable {
 public:
  void change() const { publish(); }
};

TEST(Observable, CallsEveryObserverOnceAChange) {
  Model model;
  int first = 0;
  int second = 0;
  const auto one = model.observe([&] { ++first; });
  const auto two = model.observe([&] { ++second; });
  model.change();
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 1);
  model.change();
  EXPECT_EQ(first, 2);
}

TEST(Observable, CallsNobodyWithoutAChange) {
  Model model;
  int calls = 0;
  const auto subscription = model.observe([&] { ++calls; });
  EXPECT_EQ(calls, 0);
}

TEST(Observable, CallsObserversInTheOrderInWhichTheySubscribed) {
  Model model;
  std::string order;
  const auto a = model.observe([&] { order += "a"; });
  auto b = model.observe([&] { order += "b"; });
  const auto c = model.observe([&] { order += "c"; });
  b.cancel();
  const auto d = model.observe([&] { order += "d"; });
  model.change();
  EXPECT_EQ(order, "acd");
}

TEST(Observable, CallsObserversOnThePublishingThread) {
  Model model;
  std::thread::id calledOn;
  const auto subscription = model.observe([&] { calledOn = std::this_thread::get_id(); });
  std::thread::id publisher;
  std::thread thread([&] {
    publisher = std::this_thread::get_id();
    model.change();
  });
  thread.join();
  EXPECT_EQ(calledOn, publisher);
}

TEST(Observable, NoLongerCallsAnObserverWhoseSubscriptionEnded) {
  Model model;
  int calls = 0;
  auto subscription = model.observe([&] { ++calls; });
  subscription.cancel();
  model.change();
  EXPECT_EQ(calls, 0);
}

TEST(Observable, LetsAnObserverSubscribeAnotherForTheNextChange) {
  Model model;
  int late = 0;
  bool isSubscribed = false;
  Subscription second;
  const auto first = model.observe([&] {
    if (!std::exchange(isSubscribed, true)) second = model.observe([&] { ++late; });
  });
  model.change();
  EXPECT_EQ(late, 0);
  model.change();
  EXPECT_EQ(late, 1);
}

TEST(Observable, LetsAnObserverCancelItself) {
  Model model;
  int calls = 0;
  Subscription subscription;
  subscription = model.observe([&] {
    ++calls;
    subscription.cancel();
  });
  model.change();
  model.change();
  EXPECT_EQ(calls, 1);
}

TEST(Observable, LetsAnObserverPublish) {
  Model model;
  int calls = 0;
  const auto subscription = model.observe([&] {
    if (++calls < 3) model.change();
  });
  model.change();
  EXPECT_EQ(calls, 3);
}

TEST(Observable, MayGoBeforeItsSubscriptions) {
  auto model = std::make_unique<Model>();
  auto subscription = model->observe([] {});
  model.reset();
  subscription.cancel();
}

TEST(Observable, ReleasesWhatAnObserverHeldWhenItsSubscriptionEnds) {
  Model model;
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watched = held;
  auto subscription = model.observe([held = std::move(held)] { static_cast<void>(*held); });
  EXPECT_FALSE(watched.expired());
  subscription.cancel();
  EXPECT_TRUE(watched.expired());
}

TEST(Observable, AnObserverMayHoldTheSubscriptionOfAnother) {
  Model model;
  int calls = 0;
  auto inner = std::make_shared<Subscription>(model.observe([&] { ++calls; }));
  auto outer = model.observe([inner = std::move(inner)] { static_cast<void>(inner); });
  outer.cancel();  // destroys the observer and with it the inner subscription
  model.change();
  EXPECT_EQ(calls, 0);
}

TEST(Observable, AnObserverThatAnEarlierOneCancelsIsNotCalledInThatRoundAnyMore) {
  Model model;
  Subscription later;
  int calls = 0;
  const auto earlier = model.observe([&] { later.cancel(); });
  later = model.observe([&] { ++calls; });
  model.change();
  EXPECT_EQ(calls, 0);
}

TEST(Observable, TakesSubscriptionsAndChangesFromSeveralThreads) {
  Model model;
  std::atomic<int> calls = 0;
  const auto steady = model.observe([&] { ++calls; });
  constexpr int kRounds = 1000;
  std::latch both(2);
  std::thread publisher([&] {
    both.arrive_and_wait();
    for (int round = 0; round < kRounds; ++round) model.change();
  });
  both.arrive_and_wait();
  for (int round = 0; round < kRounds; ++round) {
    const auto passing = model.observe([] {});
  }
  publisher.join();
  EXPECT_EQ(calls, kRounds);
}

}  // namespace
}  // namespace pallimo::base
