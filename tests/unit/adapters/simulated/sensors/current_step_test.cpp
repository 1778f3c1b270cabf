// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/sensors/current_step.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "fakes/manual_clock.h"
#include "movable_steps.h"

namespace pallimo::adapters::simulated {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr double kStart = 1'790'000'000;
constexpr fakes::ManualClock::TimePoint kStartPoint{seconds(1'790'000'000)};

using Moments = std::vector<SimulatedMoment>;

/// Notes for which moments a step was made; the step's name tells its request.
class NotingSource final : public StepSource {
 public:
  explicit NotingSource(Moments& made) : made_(made) {}

  std::shared_ptr<const RecordingStep> stepAt(const SimulatedMoment& moment) override {
    made_.push_back(moment);
    RecordingStep step;
    step.powermetrics = std::to_string(moment.request);
    return std::make_shared<const RecordingStep>(std::move(step));
  }

 private:
  Moments& made_;
};

class CurrentStepTest : public ::testing::Test {
 protected:
  CurrentStepTest() { clock_.set(kStartPoint); }

  Moments made_;
  fakes::ManualClock clock_;
  CurrentStep now_{std::make_unique<NotingSource>(made_), clock_, kStart};
};

TEST_F(CurrentStepTest, BeginsWithTheFirstRequestAtTimeZeroWhateverTheClockShows) {
  clock_.advance(seconds(30));
  now_.get();
  EXPECT_EQ(made_, (Moments{{1, 0}}));
}

TEST_F(CurrentStepTest, IsMadeOnceAMoment) {
  const auto first = now_.get();
  EXPECT_EQ(now_.get(), first);
  EXPECT_EQ(made_.size(), 1u);
}

TEST_F(CurrentStepTest, IsThatOfTheResultAtTheTimeOfItsDelivery) {
  clock_.advance(milliseconds(2500));
  now_.moveTo(7);
  EXPECT_EQ(now_.get()->powermetrics, "7");
  EXPECT_EQ(made_, (Moments{{7, 2.5}}));
}

TEST_F(CurrentStepTest, StandsStillWhileTheClockGoesOn) {
  clock_.advance(seconds(2));
  now_.moveTo(2);
  clock_.advance(seconds(5));
  now_.get();
  clock_.advance(seconds(5));
  now_.get();
  EXPECT_EQ(made_, (Moments{{2, 2}}));
}

TEST_F(CurrentStepTest, IsNotMadeForAMomentThatNobodyAsksAbout) {
  now_.moveTo(1);
  now_.moveTo(2);
  EXPECT_TRUE(made_.empty());
  now_.get();
  EXPECT_EQ(made_, (Moments{{2, 0}}));
}

TEST_F(CurrentStepTest, IsMadeAgainWhenTheSameRequestComesAgain) {
  now_.moveTo(1);
  now_.get();
  clock_.advance(seconds(1));
  now_.moveTo(1);
  now_.get();
  EXPECT_EQ(made_, (Moments{{1, 0}, {1, 1}}));
}

TEST_F(CurrentStepTest, AClockThatWasSetBackBeforeTheStartCountsAsTheStart) {
  clock_.set(kStartPoint - seconds(100));
  now_.moveTo(3);
  now_.get();
  EXPECT_EQ(made_, (Moments{{3, 0}}));
}

TEST_F(CurrentStepTest, StandsStillUntilAClockThatWasSetBackHasCaughtUp) {
  clock_.set(kStartPoint + seconds(50));
  now_.moveTo(1);
  now_.get();
  for (std::uint64_t request = 2; request <= 4; ++request) {
    clock_.set(kStartPoint + seconds(10 * request + 20));
    now_.moveTo(request);
    now_.get();
  }
  EXPECT_EQ(made_, (Moments{{1, 50}, {2, 50}, {3, 50}, {4, 60}}));
}

TEST_F(CurrentStepTest, AMomentThatNobodyAskedAboutHoldsTheTimeToo) {
  clock_.set(kStartPoint + seconds(50));
  now_.moveTo(1);
  clock_.set(kStartPoint + seconds(10));
  now_.moveTo(2);
  now_.get();
  EXPECT_EQ(made_, (Moments{{2, 50}}));
}

TEST_F(CurrentStepTest, AStepThatIsKeptStaysWhatItWas) {
  const auto kept = now_.get();
  now_.moveTo(2);
  EXPECT_EQ(now_.get()->powermetrics, "2");
  EXPECT_EQ(kept->powermetrics, "1");
}

/// Notices when two threads are in it at once. Its step is the same number three times.
class LonelySource final : public StepSource {
 public:
  explicit LonelySource(std::atomic<int>& collisions) : collisions_(collisions) {}

  std::shared_ptr<const RecordingStep> stepAt(const SimulatedMoment& moment) override {
    if (isBusy_.exchange(true)) ++collisions_;
    const auto number = static_cast<std::uint32_t>(moment.request);
    RecordingStep step = stepWithTicks({{number, number, number, number}});
    step.hid.emplace(1, HidReading{number, number});
    isBusy_ = false;
    return std::make_shared<const RecordingStep>(std::move(step));
  }

 private:
  std::atomic<int>& collisions_;
  std::atomic<bool> isBusy_ = false;
};

bool isOneMoment(const RecordingStep& step) {
  const std::uint32_t number = step.ticks->front()[0];
  return step.ticks->front()[3] == number && step.hid->front().locationID == number;
}

TEST(CurrentStepThreads, EveryReaderSeesOneWholeMomentWhileResultsMoveIt) {
  constexpr std::uint64_t kResults = 2'000;
  const fakes::ManualClock clock;
  std::atomic<int> collisions = 0;
  std::atomic<int> brokenSteps = 0;
  std::atomic<bool> isOver = false;
  CurrentStep now(std::make_unique<LonelySource>(collisions), clock, 0);
  const auto readUntilItIsOver = [&] {
    do {
      if (!isOneMoment(*now.get())) ++brokenSteps;
    } while (!isOver);
  };

  std::thread first(readUntilItIsOver);
  std::thread second(readUntilItIsOver);
  for (std::uint64_t request = 1; request <= kResults; ++request) now.moveTo(request);
  isOver = true;
  first.join();
  second.join();

  EXPECT_EQ(brokenSteps, 0);
  EXPECT_EQ(collisions, 0);
  EXPECT_EQ(now.get()->ticks->front()[0], kResults);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
