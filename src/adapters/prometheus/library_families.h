// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <prometheus/metric_family.h>

#include <vector>

#include "ports/metrics_server.h"

namespace pallimo::adapters::prometheus {

/// The same families as the library has them, in their order. Pure.
std::vector<::prometheus::MetricFamily> libraryFamilies(const ports::MetricFamilies& families);

}  // namespace pallimo::adapters::prometheus
