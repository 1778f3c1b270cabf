// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

#include "base/mutex.h"
#include "helper_link/sampling_gate.h"

namespace pallimo::fakes {

/// A helper manager whose flags the test sets, open at first, and which remembers what was asked of
/// it. Any thread.
class FakeSamplingGate final : public helper_link::SamplingGate {
 public:
  struct Request {
    bool includeGPU = false;
    double msSampling = 0;
    bool operator==(const Request&) const = default;
  };

  bool isAuthorized() const override { return isAuthorized_; }
  bool isRequestedToUninstall() const override { return isRequestedToUninstall_; }
  void requestPowermetrics(bool includeGPU, double msSampling) override {
    base::MutexLock lock(mutex_);
    requests_.push_back({includeGPU, msSampling});
  }

  void setAuthorized(bool flag) { isAuthorized_ = flag; }
  void setRequestedToUninstall(bool flag) { isRequestedToUninstall_ = flag; }
  std::vector<Request> requests() const {
    base::MutexLock lock(mutex_);
    return requests_;
  }

 private:
  std::atomic<bool> isAuthorized_ = true;
  std::atomic<bool> isRequestedToUninstall_ = false;
  mutable base::Mutex mutex_;
  std::vector<Request> requests_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
