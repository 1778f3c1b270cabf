// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include "sampling/sample_reader.h"
#include "serving/metric_families.h"

namespace pallimo::serving {

/// Tells of one sample after the other which of its figures were measured. Delivery thread.
class MeasuredFiguresTeller {
 public:
  /// `reader` reads the sample that the row was taken of; `isGPUUtilizationTold` is what the
  /// utilisation module says of the same sample.
  MeasuredFigures tell(const sampling::SampleReader& reader, bool isGPUUtilizationTold);

 private:
  // As in the utilisation module: once a sample has named clusters, later ones are not asked.
  bool areClustersNamed_ = false;
};

}  // namespace pallimo::serving
