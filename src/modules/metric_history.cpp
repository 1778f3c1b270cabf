// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "modules/metric_history.h"

#include <algorithm>

namespace pallimo::modules {

void MetricHistory::insert(double value) {
  values_.push_front(value);
  if (values_.size() > limit_) values_.pop_back();
}

std::optional<double> MetricHistory::largest() const {
  if (values_.empty()) return std::nullopt;
  double maximum = values_.front();
  for (const double value : values_) {
    if (value > maximum) maximum = value;
  }
  return maximum;
}

std::optional<double> MetricHistory::newest() const {
  if (values_.empty()) return std::nullopt;
  return values_.front();
}

MetricHistory::Snapshot MetricHistory::snapshot() const {
  const std::size_t count = std::min(values_.size(), kSnapshotLength);
  const auto end = values_.begin() + static_cast<std::ptrdiff_t>(count);
  return {std::vector<double>(values_.begin(), end), values_.size()};
}

}  // namespace pallimo::modules
