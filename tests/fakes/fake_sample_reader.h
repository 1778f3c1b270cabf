// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <utility>

#include "base/mutex.h"
#include "sampling/sample_reader.h"

namespace pallimo::fakes {

/// The current sample as the test sets it: empty at first, with a period of 500 ms. Any thread.
class FakeSampleReader final : public sampling::SampleReader {
 public:
  sampling::PowerValues getPowerValues() const override { return sample().power; }
  sampling::ClusterFrequencies getClusterFrequencies() const override {
    return sample().clusterFrequencies;
  }
  sampling::GPUFrequency getGPUFrequency() const override { return sample().gpuFrequency; }
  sampling::ClusterCPUs getClusterCPUs() const override { return sample().clusterCPUs; }
  double msSampling() const override { return sample().msSampling; }

  void setPowerValues(sampling::PowerValues values) {
    base::MutexLock lock(mutex_);
    sample_.power = std::move(values);
  }
  void setClusterFrequencies(sampling::ClusterFrequencies frequencies) {
    base::MutexLock lock(mutex_);
    sample_.clusterFrequencies = std::move(frequencies);
  }
  void setGPUFrequency(sampling::GPUFrequency readings) {
    base::MutexLock lock(mutex_);
    sample_.gpuFrequency = std::move(readings);
  }
  void setClusterCPUs(sampling::ClusterCPUs cpus) {
    base::MutexLock lock(mutex_);
    sample_.clusterCPUs = std::move(cpus);
  }
  void setMsSampling(double milliseconds) {
    base::MutexLock lock(mutex_);
    sample_.msSampling = milliseconds;
  }

 private:
  struct Sample {
    sampling::PowerValues power;
    sampling::ClusterFrequencies clusterFrequencies;
    sampling::GPUFrequency gpuFrequency;
    sampling::ClusterCPUs clusterCPUs;
    double msSampling = 500;
  };

  Sample sample() const {
    base::MutexLock lock(mutex_);
    return sample_;
  }

  mutable base::Mutex mutex_;
  Sample sample_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
