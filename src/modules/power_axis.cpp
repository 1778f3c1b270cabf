// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/power_axis.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace pallimo::modules {

namespace {

struct Row {
  double bound = 0;  // W, the largest value that the row holds
  std::size_t count = 0;
  std::array<std::string_view, 8> labels{};

  std::span<const std::string_view> list() const { return {labels.data(), count}; }
};

template <std::size_t N>
constexpr Row row(double bound, const std::string_view (&labels)[N]) {
  Row result;
  result.bound = bound;
  result.count = N;
  std::copy(labels, labels + N, result.labels.begin());
  return result;
}

constexpr std::array kPowerAxisTable = {
    row(20, {"20", "15", "10", "5", "0"}),
    row(30, {"30", "25", "20", "15", "10", "5", "0"}),
    row(40, {"40", "30", "20", "10", "0"}),
    row(50, {"50", "40", "30", "20", "10", "0"}),
    row(60, {"60", "50", "40", "30", "20", "10", "0"}),
    row(70, {"70", "60", "50", "40", "30", "20", "10", "0"}),
    row(80, {"80", "60", "40", "20", "0"}),
    row(90, {"90", "75", "60", "45", "30", "15", "0"}),
    row(100, {"100", "80", "60", "40", "20", "0"}),
    row(120, {"120", "100", "80", "60", "40", "20", "0"}),
    row(150, {"150", "125", "100", "75", "50", "25", "0"}),
    row(200, {"200", "150", "100", "50", "0"}),
    row(250, {"250", "200", "150", "100", "50", "0"}),
    row(300, {"300", "250", "200", "150", "100", "50", "0"}),
    row(400, {"400", "300", "200", "100", "0"}),
    row(500, {"500", "400", "300", "200", "100", "0"}),
    row(600, {"600", "500", "400", "300", "200", "100", "0"}),
    row(700, {"700", "600", "500", "400", "300", "200", "100", "0"}),
    row(800, {"800", "640", "480", "320", "160", "0"}),
};

constexpr const Row& kInitialRow = kPowerAxisTable[1];

const Row& rowFor(std::optional<double> largest) {
  if (!largest) return kPowerAxisTable.front();
  for (const Row& row : kPowerAxisTable) {
    if (*largest <= row.bound) return row;
  }
  return kPowerAxisTable.back();
}

double written(std::string_view label) {
  int number = 0;
  std::from_chars(label.data(), label.data() + label.size(), number);
  return number;
}

}  // namespace

PowerAxis initialPowerAxis() { return {kInitialRow.list(), 0}; }

PowerAxis powerAxisFor(std::optional<double> largest) {
  const auto labels = rowFor(largest).list();
  return {labels, written(labels.front())};
}

}  // namespace pallimo::modules
