// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "serving/current_metrics.h"

#include <chrono>
#include <utility>

namespace pallimo::serving {

namespace {

/// To the millisecond below, as in a line of JSON: whoever compares the two finds the same sample.
double secondsSince1970(std::chrono::system_clock::time_point time) {
  const auto whole = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch());
  return static_cast<double>(whole.count()) / 1000;
}

}  // namespace

CurrentMetrics::CurrentMetrics(std::string version) {
  auto state = std::make_shared<ServedState>();
  state->version = std::move(version);
  state_ = std::move(state);
}

template <typename Change>
void CurrentMetrics::change(Change apply) {
  std::shared_ptr<const ServedState> outdated;  // freed after the lock is let go
  base::MutexLock lock(mutex_);
  auto changed = std::make_shared<ServedState>(*state_);
  apply(*changed);
  outdated = std::exchange(state_, std::move(changed));
}

void CurrentMetrics::setMachine(MachineInfo machine,
                                std::weak_ptr<const helper_link::SamplingGate> gate) {
  auto shared = std::make_shared<const MachineInfo>(std::move(machine));
  change([&](ServedState& state) { state.machine = std::move(shared); });
  base::MutexLock lock(mutex_);
  gate_ = std::move(gate);
}

void CurrentMetrics::take(const ServedSample& sample) {
  auto shared = std::make_shared<const ServedSample>(sample);
  change([&](ServedState& state) {
    state.lastSample = secondsSince1970(shared->row.time);
    state.current = std::move(shared);
    ++state.samples;
  });
}

void CurrentMetrics::clear() {
  change([](ServedState& state) { state.current = nullptr; });
}

ports::MetricFamilies CurrentMetrics::families() const {
  std::shared_ptr<const ServedState> state;
  std::shared_ptr<const helper_link::SamplingGate> gate;
  {
    base::MutexLock lock(mutex_);
    state = state_;
    gate = gate_.lock();
  }
  return metricFamilies(*state, gate && gate->isOpen());
}

}  // namespace pallimo::serving
