// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace pallimo::modules {

/// The vertical axis of the power graph. A value; its labels live as long as the program.
struct PowerAxis {
  /// Highest first, the last one "0", evenly spaced: n labels stand on n - 1 equal intervals, so
  /// the graph's background lines fall on them.
  std::span<const std::string_view> labels;
  /// The number that the first label writes, W; 0 before the first sample.
  double maxValue = 0;
};

/// The axis that a model without a sample shows: "30" down to "0", and a maximum of 0.
PowerAxis initialPowerAxis();

/// The axis for a history whose largest value is `largest` watts (nothing: an empty history): the
/// lowest of the table that holds it. Above 800 W, and for what is not a number, the axis stays at
/// 800 on purpose.
PowerAxis powerAxisFor(std::optional<double> largest);

}  // namespace pallimo::modules
