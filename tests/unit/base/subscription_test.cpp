// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "base/subscription.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace pallimo::base {
namespace {

Subscription counting(int& cancelled) {
  return Subscription([&cancelled] { ++cancelled; });
}

TEST(Subscription, EndsWhenItIsDestroyed) {
  int cancelled = 0;
  {
    const Subscription subscription = counting(cancelled);
    EXPECT_EQ(cancelled, 0);
  }
  EXPECT_EQ(cancelled, 1);
}

TEST(Subscription, EndsWhenItIsCancelled) {
  int cancelled = 0;
  Subscription subscription = counting(cancelled);
  subscription.cancel();
  EXPECT_EQ(cancelled, 1);
}

TEST(Subscription, EndsOnlyOnce) {
  int cancelled = 0;
  {
    Subscription subscription = counting(cancelled);
    subscription.cancel();
    subscription.cancel();
  }
  EXPECT_EQ(cancelled, 1);
}

TEST(Subscription, ThatIsEmptyEndsNothing) {
  Subscription subscription;
  subscription.cancel();
}

TEST(Subscription, MovesItsRightIntoANewOne) {
  int cancelled = 0;
  auto first = std::make_unique<Subscription>(counting(cancelled));
  const Subscription second(std::move(*first));
  first.reset();
  EXPECT_EQ(cancelled, 0);
}

TEST(Subscription, EndsWhatItHeldWhenAnotherIsMovedIn) {
  int firstCancelled = 0;
  int secondCancelled = 0;
  Subscription subscription = counting(firstCancelled);
  subscription = counting(secondCancelled);
  EXPECT_EQ(firstCancelled, 1);
  EXPECT_EQ(secondCancelled, 0);
}

TEST(Subscription, SurvivesAMoveIntoItself) {
  int cancelled = 0;
  Subscription subscription = counting(cancelled);
  Subscription& same = subscription;
  subscription = std::move(same);
  EXPECT_EQ(cancelled, 0);
}

TEST(Subscription, MayBeCancelledFromWithinItsOwnEnd) {
  int cancelled = 0;
  Subscription subscription;
  subscription = Subscription([&] {
    ++cancelled;
    subscription.cancel();
  });
  subscription.cancel();
  EXPECT_EQ(cancelled, 1);
}

TEST(Subscription, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<Subscription>);
  EXPECT_FALSE(std::is_copy_assignable_v<Subscription>);
}

}  // namespace
}  // namespace pallimo::base
