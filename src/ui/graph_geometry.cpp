// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/graph_geometry.h"

#include <algorithm>
#include <cmath>

#include "base/fatal.h"

namespace pallimo::ui {

namespace {

constexpr double kLabelInset = 4;
constexpr double kHalfLabelHeight = 5;

/// The bands that so many labels stand at the edges of.
std::size_t bandsOf(std::size_t numberOfLabels) {
  if (numberOfLabels == 0) base::fatal("A graph needs at least one axis label.");
  return numberOfLabels - 1;
}

}  // namespace

std::vector<Point> outline(double width, double height) {
  return {{0, 0}, {width, 0}, {width, height}, {0, height}, {0, 0}};
}

std::vector<Line> gridLines(std::size_t numberOfLabels, double width, double height) {
  const std::size_t bands = bandsOf(numberOfLabels);
  std::vector<Line> lines;
  lines.reserve(bands);
  for (std::size_t i = 0; i < bands; ++i) {
    const double y = static_cast<double>(i) * height / static_cast<double>(bands);
    lines.push_back({{0, y}, {width, y}});
  }
  return lines;
}

Point labelOrigin(std::size_t position, std::size_t numberOfLabels, double height) {
  const std::size_t bands = bandsOf(numberOfLabels);
  const double band = bands == 0 ? 0 : height / static_cast<double>(bands);
  return {kLabelInset, static_cast<double>(position) * band - kHalfLabelHeight};
}

std::size_t labelPosition(std::span<const std::string> labels, std::string_view label) {
  const auto found = std::find(labels.begin(), labels.end(), label);
  return found == labels.end() ? 0 : static_cast<std::size_t>(found - labels.begin());
}

std::vector<std::vector<Point>> curve(std::span<const double> data, double width, double height) {
  std::vector<std::vector<Point>> pieces;
  bool isBroken = true;
  for (std::size_t i = 0; i < data.size(); ++i) {
    if (!std::isfinite(data[i])) {
      isBroken = true;
      continue;
    }
    if (isBroken) pieces.emplace_back();
    isBroken = false;
    pieces.back().push_back({width - static_cast<double>(i), height - data[i] * height});
  }
  return pieces;
}

}  // namespace pallimo::ui
