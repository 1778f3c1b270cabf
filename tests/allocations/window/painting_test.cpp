// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// How often a sample that is painted asks for memory through operator new: ours, and the toolkit's
// objects. What the toolkit keeps in its own arrays comes from malloc, and is not counted. Counted
// were 190 and 439; the room is the toolkit's, whose next version may have other objects.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

#include "allocations/counted_memory.h"
#include "benchmarks/painted_window.h"
#include "benchmarks/shown_panels.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::allocations {
namespace {

constexpr std::size_t kWarmUps = 4;
constexpr std::size_t kSamples = 32;

TEST(PaintingAllocations, OfASampleInTheFourGraphs) {
  ui::widgets::testApplication();
  benchmarks::PaintedGraphs graphs(2);
  std::size_t moment = 0;
  while (moment < kWarmUps) graphs.paint(moment++);
  std::size_t most = 0;
  for (std::size_t i = 0; i < kSamples; ++i) {
    most = std::max(most, allocationsOf([&] { graphs.paint(moment++); }));
  }
  EXPECT_LE(most, 200u);
}

TEST(PaintingAllocations, OfASampleThatTheWindowShows) {
  ui::widgets::testApplication();
  benchmarks::ShownPanels panels;
  std::size_t most = 0;
  for (std::size_t i = 0; i < kWarmUps + kSamples; ++i) {
    panels.prepare();
    const std::size_t count = allocationsOf([&] { panels.show(); });
    if (i >= kWarmUps) most = std::max(most, count);
  }
  EXPECT_TRUE(panels.havePainted());
  EXPECT_LE(most, 460u);
}

}  // namespace
}  // namespace pallimo::allocations
