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
  const auto isNumber = [](double value) { return std::isfinite(value); };
  std::vector<std::vector<Point>> pieces;
  auto begin = std::ranges::find_if(data, isNumber);
  while (begin != data.end()) {
    const auto end = std::find_if_not(begin, data.end(), isNumber);
    std::vector<Point>& piece = pieces.emplace_back();
    piece.reserve(static_cast<std::size_t>(end - begin));
    for (; begin != end; ++begin) {
      piece.push_back(
          {width - static_cast<double>(begin - data.begin()), height - *begin * height});
    }
    begin = std::find_if(end, data.end(), isNumber);
  }
  return pieces;
}

}  // namespace pallimo::ui
