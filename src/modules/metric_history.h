// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <deque>
#include <limits>
#include <optional>
#include <vector>

namespace pallimo::modules {

/// The past values of one figure, index 0 the newest.
///
/// Insertion takes constant time however long the history is: a std::deque grows and shrinks by
/// chunks at its ends and moves no value. Not thread-safe; its model guards it.
class MetricHistory {
 public:
  /// Values that a bounded history keeps: one for each point of a graph's width.
  static constexpr std::size_t kHistoryLength = 350;
  static constexpr std::size_t kUnbounded = std::numeric_limits<std::size_t>::max();
  /// Values that a snapshot carries at most. Graphs draw one value a point and the widest graph
  /// stays well below this, so that a history of a day is not copied for the few that show.
  static constexpr std::size_t kSnapshotLength = 512;

  /// The newest values, for readers on other threads.
  struct Snapshot {
    std::vector<double> newest;  ///< index 0 the newest; min(length, kSnapshotLength) values
    std::size_t length = 0;      ///< of the history itself
  };

  explicit MetricHistory(std::size_t limit = kHistoryLength) : limit_(limit) {}

  /// Makes `value` the newest; beyond the limit the oldest is dropped.
  void insert(double value);
  /// The running maximum from the newest on, which gives way to strictly greater values only: a
  /// newest value that is not a number stays, an older one is passed over. Nothing when empty.
  std::optional<double> largest() const;
  /// Nothing when empty.
  std::optional<double> newest() const;
  Snapshot snapshot() const;

 private:
  std::size_t limit_;
  std::deque<double> values_;
};

}  // namespace pallimo::modules
