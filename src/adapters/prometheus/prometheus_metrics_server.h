// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <memory>

#include "ports/metrics_server.h"

namespace prometheus {
class Collectable;
class Exposer;
}  // namespace prometheus

namespace pallimo::adapters::prometheus {

/// Serves metrics through prometheus-cpp: two threads answer, a third one accepts. Every other path
/// is not found. The library adds three families about itself, `exposer_*`.
class PrometheusMetricsServer final : public ports::MetricsServer {
 public:
  PrometheusMetricsServer();
  /// Scrapes under way are answered first.
  ~PrometheusMetricsServer() override;

  std::optional<std::string> listen(const ports::ListenAddress& address, Source source) override;

 private:
  std::shared_ptr<::prometheus::Collectable> families_;  // the exposer's link to it is weak
  std::unique_ptr<::prometheus::Exposer> exposer_;
  ports::ListenAddress address_;  ///< while there is an exposer
};

}  // namespace pallimo::adapters::prometheus
