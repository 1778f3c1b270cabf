// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/mutex.h"
#include "ports/http_client.h"

namespace pallimo::fakes {

/// Keeps what it is to send. Any thread.
class RecordingHttpClient final : public ports::HttpClient {
 public:
  void send(const ports::HttpRequest& request) override {
    base::MutexLock lock(mutex_);
    sent_.push_back(request);
  }

  /// The requests since the last call, in order.
  std::vector<ports::HttpRequest> takeSent() {
    base::MutexLock lock(mutex_);
    return std::exchange(sent_, {});
  }

 private:
  base::Mutex mutex_;
  std::vector<ports::HttpRequest> sent_ PALLIMO_GUARDED_BY(mutex_);
};

}  // namespace pallimo::fakes
