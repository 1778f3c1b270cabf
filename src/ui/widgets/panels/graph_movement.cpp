// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/panels/graph_movement.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace pallimo::ui::widgets {
namespace {

bool drawnAlike(double a, double b) { return a == b || (!std::isfinite(a) && !std::isfinite(b)); }

bool moved(const std::vector<double>& earlier, const std::vector<double>& later, std::size_t points,
           std::size_t visible) {
  const auto before = std::min(earlier.size(), visible - points);
  const auto after = std::min(later.size(), visible);
  if (before != after - std::min(points, after)) {
    return false;
  }
  return std::equal(earlier.begin(), earlier.begin() + static_cast<std::ptrdiff_t>(before),
                    later.begin() + static_cast<std::ptrdiff_t>(std::min(points, after)),
                    drawnAlike);
}

bool sameKind(const GraphView& a, const GraphView& b) {
  return a.axisLabels.size() == b.axisLabels.size() &&
         std::ranges::equal(a.datas, b.datas, {}, &GraphData::color, &GraphData::color);
}

}  // namespace

std::optional<std::size_t> movement(const GraphView& earlier, const GraphView& later,
                                    std::size_t visible) {
  if (!sameKind(earlier, later)) {
    return std::nullopt;
  }
  for (std::size_t points = 0; points <= kLargestMovement && points < visible; ++points) {
    bool all = true;
    for (std::size_t i = 0; all && i < later.datas.size(); ++i) {
      all = moved(earlier.datas[i].data, later.datas[i].data, points, visible);
    }
    if (all) {
      return points;
    }
  }
  return std::nullopt;
}

}  // namespace pallimo::ui::widgets
