// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/notification_centre.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <string>
#include <thread>

namespace pallimo::base {
namespace {

TEST(NotificationCentre, NamesTheNoticesOfTheApp) {
  EXPECT_EQ(notification::kClearData, "ClearData");
  EXPECT_EQ(notification::kUpdateView, "UpdateView");
  EXPECT_EQ(notification::kXPCDidInstall, "XPCDidInstall");
  EXPECT_EQ(notification::kXPCInstallError, "XPCInstallError");
}

TEST(NotificationCentre, CallsTheObserversOfTheNameBeforePostReturns) {
  NotificationCentre centre;
  int calls = 0;
  const auto subscription = centre.observe("ClearData", [&] { ++calls; });
  centre.post("ClearData");
  EXPECT_EQ(calls, 1);
}

TEST(NotificationCentre, CallsNobodyForAnotherName) {
  NotificationCentre centre;
  int calls = 0;
  const auto subscription = centre.observe("ClearData", [&] { ++calls; });
  centre.post("UpdateView");
  centre.post("cleardata");
  centre.post("ClearData ");
  centre.post("");
  EXPECT_EQ(calls, 0);
}

TEST(NotificationCentre, TakesANoticeThatNobodyObserves) {
  const NotificationCentre centre;
  centre.post("UpdateView");
}

TEST(NotificationCentre, CallsObserversInTheOrderInWhichTheySubscribed) {
  NotificationCentre centre;
  std::string order;
  const auto a = centre.observe("UpdateView", [&] { order += "a"; });
  const auto b = centre.observe("UpdateView", [&] { order += "b"; });
  const auto c = centre.observe("UpdateView", [&] { order += "c"; });
  centre.post("UpdateView");
  EXPECT_EQ(order, "abc");
}

TEST(NotificationCentre, CallsObserversOnThePostingThread) {
  NotificationCentre centre;
  std::thread::id calledOn;
  const auto subscription =
      centre.observe("UpdateView", [&] { calledOn = std::this_thread::get_id(); });
  std::thread thread([&] { centre.post("UpdateView"); });
  const std::thread::id poster = thread.get_id();
  thread.join();
  EXPECT_EQ(calledOn, poster);
}

TEST(NotificationCentre, NoLongerCallsAnObserverWhoseSubscriptionEnded) {
  NotificationCentre centre;
  int calls = 0;
  {
    const auto subscription = centre.observe("UpdateView", [&] { ++calls; });
    centre.post("UpdateView");
  }
  centre.post("UpdateView");
  EXPECT_EQ(calls, 1);
}

TEST(NotificationCentre, LetsAnObserverPostAndSubscribe) {
  NotificationCentre centre;
  std::string order;
  Subscription inner;
  const auto outer = centre.observe("ClearData", [&] {
    order += "clear ";
    inner = centre.observe("UpdateView", [&] { order += "update "; });
    centre.post("UpdateView");
  });
  centre.post("ClearData");
  EXPECT_EQ(order, "clear update ");
}

TEST(NotificationCentre, MayGoBeforeItsSubscriptions) {
  auto centre = std::make_unique<NotificationCentre>();
  auto subscription = centre->observe("UpdateView", [] {});
  centre.reset();
  subscription.cancel();
}

TEST(NotificationCentre, TakesSubscriptionsAndNoticesFromSeveralThreads) {
  NotificationCentre centre;
  std::atomic<int> calls = 0;
  const auto steady = centre.observe("UpdateView", [&] { ++calls; });
  constexpr int kRounds = 1000;
  std::latch both(2);
  std::thread poster([&] {
    both.arrive_and_wait();
    for (int round = 0; round < kRounds; ++round) centre.post("UpdateView");
  });
  both.arrive_and_wait();
  for (int round = 0; round < kRounds; ++round) {
    const auto same = centre.observe("UpdateView", [] {});
    const auto other = centre.observe("name " + std::to_string(round), [] {});
  }
  poster.join();
  EXPECT_EQ(calls, kRounds);
}

}  // namespace
}  // namespace pallimo::base
