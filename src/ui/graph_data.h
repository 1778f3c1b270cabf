// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace pallimo::ui {

/// What a line or a value is painted in. Which pixels that gives depends on the colour scheme: see
/// palette.h.
enum class SeriesColor { blue, cyan, orange, pink, purple };

/// One series of a graph. Equal and hashable by its fields.
struct GraphData {
  std::string id;  ///< a fresh UUID each time a panel is built
  /// Fractions of the axis, newest first: 0 is the bottom of the box and 1 the top. A value that is
  /// not finite breaks the line.
  std::vector<double> data;
  SeriesColor color = SeriesColor::blue;
  bool operator==(const GraphData&) const = default;
};

/// A whole graph.
struct GraphView {
  std::vector<std::string> axisLabels;  ///< top first, at least one
  std::vector<GraphData> datas;         ///< in drawing order, later over earlier
  bool operator==(const GraphView&) const = default;
};

}  // namespace pallimo::ui

template <>
struct std::hash<pallimo::ui::GraphData> {
  std::size_t operator()(const pallimo::ui::GraphData& series) const noexcept;
};
