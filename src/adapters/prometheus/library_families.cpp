// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/prometheus/library_families.h"

namespace pallimo::adapters::prometheus {

namespace {

::prometheus::ClientMetric librarySeries(const ports::MetricSeries& series,
                                         ports::MetricFamily::Kind kind) {
  ::prometheus::ClientMetric metric;
  for (const auto& [name, value] : series.labels) metric.label.push_back({name, value});
  if (kind == ports::MetricFamily::Kind::counter) {
    metric.counter.value = series.value;
  } else {
    metric.gauge.value = series.value;
  }
  return metric;
}

::prometheus::MetricFamily libraryFamily(const ports::MetricFamily& family) {
  const bool isCounter = family.kind == ports::MetricFamily::Kind::counter;
  ::prometheus::MetricFamily converted;
  converted.name = family.name;
  converted.help = family.help;
  converted.type = isCounter ? ::prometheus::MetricType::Counter : ::prometheus::MetricType::Gauge;
  for (const ports::MetricSeries& series : family.series) {
    converted.metric.push_back(librarySeries(series, family.kind));
  }
  return converted;
}

}  // namespace

std::vector<::prometheus::MetricFamily> libraryFamilies(const ports::MetricFamilies& families) {
  std::vector<::prometheus::MetricFamily> converted;
  converted.reserve(families.size());
  for (const ports::MetricFamily& family : families) converted.push_back(libraryFamily(family));
  return converted;
}

}  // namespace pallimo::adapters::prometheus
