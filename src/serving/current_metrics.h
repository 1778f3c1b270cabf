// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>
#include <string>

#include "base/mutex.h"
#include "helper_link/sampling_gate.h"
#include "serving/metric_families.h"

namespace pallimo::serving {

/// What a scrape finds: the figures of the last sample, as the panels show them. Any thread.
///
/// Each change makes a new immutable state; a scrape takes the one that stands and works on it
/// without a lock, so that scrapes and samples never wait for each other's work.
class CurrentMetrics {
 public:
  explicit CurrentMetrics(std::string version);

  /// The machine and whoever knows whether its helper serves; a gate that is gone does not.
  void setMachine(MachineInfo machine, std::weak_ptr<const helper_link::SamplingGate> gate);
  /// A new sample, in whose place the one before is forgotten.
  void take(const ServedSample& sample);
  /// There are no figures until the next sample; those of the past still count.
  void clear();

  ports::MetricFamilies families() const;

 private:
  /// Under the lock: replaces the state by a changed copy.
  template <typename Change>
  void change(Change apply);

  mutable base::Mutex mutex_;
  std::shared_ptr<const ServedState> state_ PALLIMO_GUARDED_BY(mutex_);
  std::weak_ptr<const helper_link::SamplingGate> gate_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::serving
