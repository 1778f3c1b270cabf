// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "ui/graph_data.h"

namespace pallimo::ui::widgets {

/// A graph of four series that grows by random samples, the same ones in every run: steep jumps,
/// quiet stretches, values outside the box and on its edges, gaps.
class RandomGraph {
 public:
  static constexpr std::size_t kHistory = 350;

  explicit RandomGraph(unsigned seed) : random_(seed) {
    graph_.axisLabels = {"30", "25", "20", "15", "10", "5", "0"};
    for (SeriesColor color :
         {SeriesColor::cyan, SeriesColor::blue, SeriesColor::orange, SeriesColor::pink}) {
      graph_.datas.push_back({"", {}, color});
    }
  }

  GraphView& graph() { return graph_; }

  void addSamples(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) addSample();
  }

  void clear() {
    for (GraphData& series : graph_.datas) series.data.clear();
  }

 private:
  void addSample() {
    for (GraphData& series : graph_.datas) {
      series.id = std::to_string(random_());
      series.data.insert(series.data.begin(), value());
      if (series.data.size() > kHistory) series.data.pop_back();
    }
  }

  double value() {
    std::uniform_real_distribution<double> anywhere(-0.3, 1.3);
    std::uniform_real_distribution<double> inside(0.0, 1.0);
    switch (random_() % 16) {
      case 0:
        return anywhere(random_);
      case 1:
        return std::numeric_limits<double>::quiet_NaN();
      case 2:
        return 0;
      case 3:
        return 1;
      case 4:
        return 40 * anywhere(random_);
      case 5:
      case 6:
      case 7:
        return 0.5;
      default:
        return inside(random_);
    }
  }

  std::mt19937 random_;
  GraphView graph_;
};

}  // namespace pallimo::ui::widgets
