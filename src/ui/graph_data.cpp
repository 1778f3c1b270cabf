// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/graph_data.h"

std::size_t std::hash<pallimo::ui::GraphData>::operator()(
    const pallimo::ui::GraphData& series) const noexcept {
  // The odd factor lets the order count: swapped values are another series.
  constexpr std::size_t kFactor = 31;
  std::size_t result = std::hash<std::string>()(series.id);
  for (const double value : series.data) result = result * kFactor + std::hash<double>()(value);
  return result * kFactor + static_cast<std::size_t>(series.color);
}
