// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <vector>

namespace pallimo::adapters::simulated::tests {

using Series = std::vector<double>;

/// Pearson's coefficient: 1 when the second is a rising line of the first. Both are equally long.
inline double correlation(const Series& first, const Series& second) {
  const auto count = static_cast<double>(first.size());
  const double meanFirst = std::accumulate(first.begin(), first.end(), 0.0) / count;
  const double meanSecond = std::accumulate(second.begin(), second.end(), 0.0) / count;
  double product = 0;
  double squaresFirst = 0;
  double squaresSecond = 0;
  for (std::size_t i = 0; i < first.size(); ++i) {
    product += (first[i] - meanFirst) * (second[i] - meanSecond);
    squaresFirst += (first[i] - meanFirst) * (first[i] - meanFirst);
    squaresSecond += (second[i] - meanSecond) * (second[i] - meanSecond);
  }
  return product / std::sqrt(squaresFirst * squaresSecond);
}

/// The place of every value in rising order, counted from 0; equal values share their mean place.
inline Series ranks(const Series& values) {
  std::vector<std::size_t> order(values.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&values](std::size_t a, std::size_t b) { return values[a] < values[b]; });
  Series places(values.size());
  for (std::size_t from = 0; from < order.size();) {
    std::size_t to = from;
    while (to < order.size() && values[order[to]] == values[order[from]]) ++to;
    const double place = static_cast<double>(from + to - 1) / 2;
    for (; from < to; ++from) places[order[from]] = place;
  }
  return places;
}

/// Spearman's coefficient: 1 when the second rises whenever the first does.
inline double rankCorrelation(const Series& first, const Series& second) {
  return correlation(ranks(first), ranks(second));
}

/// The second series against the first as it was `lag` places earlier.
inline double laggedCorrelation(const Series& first, const Series& second, std::size_t lag) {
  const auto shift = static_cast<std::ptrdiff_t>(lag);
  return correlation(Series(first.begin(), first.end() - shift),
                     Series(second.begin() + shift, second.end()));
}

/// The lag up to `highest` at which the second follows the first most closely.
inline std::size_t lagOfBest(const Series& first, const Series& second, std::size_t highest) {
  std::size_t best = 0;
  for (std::size_t lag = 1; lag <= highest; ++lag) {
    if (laggedCorrelation(first, second, lag) > laggedCorrelation(first, second, best)) best = lag;
  }
  return best;
}

}  // namespace pallimo::adapters::simulated::tests
