// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/model_state.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace pallimo::modules {
namespace {

struct Figures {
  int first = 0;
  int second = 0;
};

struct Snapshot : Figures {
  int changes = 0;
};

/// Counts its changes and the snapshots that are made of it.
struct State {
  Figures figures;
  int changes = 0;
  std::shared_ptr<std::atomic<int>> made = std::make_shared<std::atomic<int>>(0);

  Snapshot snapshot() const {
    ++*made;
    return {figures, changes};
  }
};

using TestedState = ModelState<State, Figures, Snapshot>;

void commit(TestedState& tested, int value) {
  tested.commit([value](State& state) {
    state.figures = {value, value};
    ++state.changes;
  });
}

TEST(ModelState, IsANewStateAtFirst) {
  const TestedState tested;
  EXPECT_EQ(tested.figures().first, 0);
  ASSERT_NE(tested.snapshot(), nullptr);
  EXPECT_EQ(tested.snapshot()->changes, 0);
}

TEST(ModelState, ACommitShowsInFiguresAndSnapshot) {
  TestedState tested;
  commit(tested, 7);
  EXPECT_EQ(tested.figures().second, 7);
  EXPECT_EQ(tested.snapshot()->second, 7);
  EXPECT_EQ(tested.snapshot()->changes, 1);
}

TEST(ModelState, ASnapshotIsSharedUntilTheNextCommit) {
  TestedState tested;
  const auto first = tested.snapshot();
  EXPECT_EQ(tested.snapshot(), first);
  commit(tested, 7);
  EXPECT_NE(tested.snapshot(), first);
}

TEST(ModelState, ACommitThatChangesNothingInvalidatesTheSnapshotToo) {
  TestedState tested;
  const auto first = tested.snapshot();
  tested.commit([](State&) {});
  EXPECT_NE(tested.snapshot(), first);
}

TEST(ModelState, ASnapshotIsMadeWhenItIsAskedForAndOnce) {
  TestedState tested;
  std::shared_ptr<std::atomic<int>> made;
  tested.commit([&made](State& state) { made = state.made; });
  commit(tested, 7);
  EXPECT_EQ(tested.figures().first, 7);
  EXPECT_EQ(*made, 0);
  tested.snapshot();
  tested.snapshot();
  EXPECT_EQ(*made, 1);
}

TEST(ModelState, ASnapshotThatIsHeldStaysAsItIs) {
  TestedState tested;
  commit(tested, 7);
  const auto held = tested.snapshot();
  commit(tested, 8);
  tested.clear();
  EXPECT_EQ(held->first, 7);
  EXPECT_EQ(held->changes, 1);
}

TEST(ModelState, ClearingMakesANewState) {
  TestedState tested;
  commit(tested, 7);
  const auto before = tested.snapshot();
  tested.clear();
  EXPECT_EQ(tested.figures().first, 0);
  EXPECT_NE(tested.snapshot(), before);
  EXPECT_EQ(tested.snapshot()->changes, 0);
}

TEST(ModelState, ClearingKeepsWhatItIsToldAndNothingElse) {
  TestedState tested;
  commit(tested, 7);
  tested.clear([](const State& former, State& emptied) { emptied.changes = former.changes; });
  EXPECT_EQ(tested.snapshot()->changes, 1);
  EXPECT_EQ(tested.figures().first, 0);
  EXPECT_EQ(tested.figures().second, 0);
}

TEST(ModelState, NoReaderSeesHalfOfAChange) {
  constexpr int kRounds = 2000;
  TestedState tested;
  std::atomic<bool> hasLooked = false;
  std::atomic<bool> isDone = false;
  std::thread writer([&] {
    while (!hasLooked) std::this_thread::yield();
    for (int i = 1; i <= kRounds; ++i) commit(tested, i);
    isDone = true;
  });
  bool isWhole = true;
  for (; !isDone; hasLooked = true) {
    const Figures figures = tested.figures();
    const auto snapshot = tested.snapshot();
    isWhole = isWhole && figures.first == figures.second && snapshot->first == snapshot->second &&
              snapshot->first == snapshot->changes;
  }
  writer.join();
  EXPECT_TRUE(isWhole);
  EXPECT_EQ(tested.snapshot()->changes, kRounds);
}

TEST(ModelState, ChangesOfTwoThreadsAreAllMade) {
  constexpr int kRounds = 2000;
  TestedState tested;
  const auto change = [&tested] {
    for (int i = 0; i < kRounds; ++i) commit(tested, i);
  };
  std::thread other(change);
  change();
  other.join();
  EXPECT_EQ(tested.snapshot()->changes, 2 * kRounds);
}

}  // namespace
}  // namespace pallimo::modules
