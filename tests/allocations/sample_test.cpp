// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// How often a sample asks for memory. Each limit is what was counted; a standard library with other
// small strings and other queues may stay below it.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "allocations/counted_memory.h"
#include "benchmarks/example_document.h"
#include "benchmarks/example_row.h"
#include "benchmarks/sample_road.h"
#include "fakes/scripted_random_numbers.h"
#include "logging/log_rows.h"
#include "modules/metric_history.h"
#include "ui/display_settings.h"
#include "ui/panel.h"

namespace pallimo::allocations {
namespace {

using logging::LogRows;
using modules::MetricHistory;

/// The app's road of a sample, its histories full.
class SampleAllocations : public ::testing::Test {
 protected:
  SampleAllocations() {
    for (std::size_t i = 0; i < MetricHistory::kHistoryLength; ++i) road.take(bytes);
  }

  /// The most of as many samples as a chunk of the histories holds.
  template <typename Work>
  static std::size_t most(Work work) {
    std::size_t most = 0;
    for (int i = 0; i < 64; ++i) most = std::max(most, allocationsOf(work));
    return most;
  }

  const base::Bytes bytes = benchmarks::exampleDocument();
  benchmarks::SampleRoad road{benchmarks::largestMachine()};
};

// What is kept of the document, the sensors' readings by name, the simulated Mac's answers, the
// line.
TEST_F(SampleAllocations, OfASampleFromItsBytesToALineOfTheLog) {
  EXPECT_LE(most([&] { road.take(bytes); }), 150u);
}

// The copies of the histories, the values and places of 13 series, their ids, names and figures.
TEST_F(SampleAllocations, OfTheFourPanelsThatShowIt) {
  const ui::DisplaySettings settings{.gpuFrequency = true, .gpuUtilization = true};
  const auto models = road.models();
  fakes::ScriptedRandomNumbers random;
  std::size_t count = 0;
  for (int i = 0; i < 64; ++i) {
    road.take(bytes);
    count = std::max(count, allocationsOf([&] {
                       ui::powerPanel(*models.power.snapshot(), random);
                       ui::frequencyPanel(*models.frequency.snapshot(), settings, random);
                       ui::temperaturePanel(*models.temperature.snapshot(), settings, random);
                       ui::utilizationPanel(*models.utilization.snapshot(), settings, random);
                     }));
  }
  EXPECT_LE(count, 116u);
}

TEST(HistoryAllocations, AFullHistoryTakesAChunkForEvery64Values) {
  MetricHistory history;
  for (std::size_t i = 0; i < MetricHistory::kHistoryLength; ++i) history.insert(1);
  EXPECT_LE(allocationsOf([&] {
              for (int i = 0; i < 640; ++i) history.insert(1);
            }),
            11u);
}

TEST(LogAllocations, ARowTakesNoneWithinAChunk) {
  LogRows rows;
  const logging::LogRow row = benchmarks::exampleRow(500);
  rows.append(row, {});
  EXPECT_EQ(allocationsOf([&] {
              for (std::size_t i = 1; i < LogRows::kRowsPerChunk; ++i) rows.append(row, {});
            }),
            0u);
}

}  // namespace
}  // namespace pallimo::allocations
