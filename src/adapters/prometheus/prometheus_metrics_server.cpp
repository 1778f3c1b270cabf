// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/prometheus/prometheus_metrics_server.h"

#include <prometheus/collectable.h>
#include <prometheus/exposer.h>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <thread>
#include <utility>
#include <vector>

#include "adapters/prometheus/library_families.h"
#include "adapters/prometheus/listening_place.h"
#include "base/mutex.h"

namespace pallimo::adapters::prometheus {

namespace {

class SourceFamilies final : public ::prometheus::Collectable {
 public:
  explicit SourceFamilies(ports::MetricsServer::Source source) : source_(std::move(source)) {}

  std::vector<::prometheus::MetricFamily> Collect() const override {
    return libraryFamilies(source_());
  }

 private:
  const ports::MetricsServer::Source source_;
};

/// Knocks at a server every few milliseconds. One that is about to go looks only every two seconds
/// whether it may, or when somebody connects; nobody wants to wait so long for the app to quit.
class Knocking {
 public:
  explicit Knocking(const ports::ListenAddress& address)
      : thread_([this, address] {
          while (!isOverAfterAWhile()) knock(address);
        }) {}
  ~Knocking() {
    {
      base::MutexLock lock(mutex_);
      isOver_ = true;
    }
    over_.notify_one();
    thread_.join();
  }
  Knocking(const Knocking&) = delete;
  Knocking& operator=(const Knocking&) = delete;

 private:
  bool isOverAfterAWhile() {
    base::MutexLock lock(mutex_);
    over_.wait_for(lock, std::chrono::milliseconds(5));
    return isOver_;
  }

  base::Mutex mutex_;
  bool isOver_ PALLIMO_GUARDED_BY(mutex_) = false;
  std::condition_variable_any over_;
  std::thread thread_;  // uses the members above
};

bool isIPv6(const ports::ListenAddress& address) {
  return address.host.find(':') != std::string::npos;
}

std::vector<std::string> optionsFor(const ports::ListenAddress& address) {
  const std::string host = isIPv6(address) ? "[" + address.host + "]" : address.host;
  // A client that stops in the middle of its request must not keep a thread for long.
  return {"listening_ports",    host + ":" + std::to_string(address.port),
          "num_threads",        "2",
          "request_timeout_ms", "2000"};
}

}  // namespace

PrometheusMetricsServer::PrometheusMetricsServer() = default;

PrometheusMetricsServer::~PrometheusMetricsServer() {
  if (!exposer_) return;
  const Knocking knocking(address_);
  exposer_.reset();
}

std::optional<std::string> PrometheusMetricsServer::listen(const ports::ListenAddress& address,
                                                           Source source) {
  // The library's own error is the same whatever the reason.
  if (auto problem = trialListening(address)) return problem;
  try {
    exposer_ = std::make_unique<::prometheus::Exposer>(optionsFor(address));
  } catch (const std::exception& error) {
    // Whether it can do IPv6 is decided where the library is built; Debian's can't.
    if (isIPv6(address)) return "this build's web server takes no addresses of IPv6";
    return error.what();
  }
  address_ = address;
  families_ = std::make_shared<SourceFamilies>(std::move(source));
  exposer_->RegisterCollectable(families_);
  return std::nullopt;
}

}  // namespace pallimo::adapters::prometheus
