// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ui/panel.h"
#include "ui/sample_times.h"

namespace pallimo::ui {

// What a graph tells of the sample under the pointer. Pure, any thread.

/// One series' figure of that sample.
struct ReadoutEntry {
  std::string label;
  std::string value;  ///< written as the panel writes its newest one; "nan" for a gap
  SeriesColor color = SeriesColor::blue;
  bool operator==(const ReadoutEntry&) const = default;
};

struct Readout {
  double x = 0;                       ///< of the sample in the graph's box, points
  std::vector<ReadoutEntry> entries;  ///< in the order of the series
  std::string age;                    ///< "12 s ago"; empty when the arrival is not known
  bool operator==(const Readout&) const = default;
};

/// The sample nearest to `x` points from the left edge of a box of that width: one a whole point,
/// 0 at the right edge. Halfway between two it is the older one. Nothing beside the box.
std::optional<std::size_t> sampleIndexAt(double x, double width);

/// The figures of a sample; series that do not reach back to it are left out.
std::vector<ReadoutEntry> readoutEntries(const Panel& panel, std::size_t index);

/// To the nearest second: "12 s ago" below a minute, "3 min 20 s ago" below an hour, "2 h 5 min
/// ago" from then on. A time to come, as after a clock was put back, is "0 s ago".
std::string ageText(std::chrono::system_clock::duration age);

/// All of it; nothing beside the box and where no series has a sample. `times` are those of the
/// panel's samples, the newest first; a sample beyond them has no age.
std::optional<Readout> readoutAt(double x, double width, const Panel& panel,
                                 std::span<const SampleTimes::TimePoint> times,
                                 std::chrono::system_clock::time_point now);

}  // namespace pallimo::ui
