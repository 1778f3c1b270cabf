// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <optional>
#include <string>
#include <utility>

#include "ports/metrics_server.h"

namespace pallimo::fakes {

/// Listens nowhere; the test scrapes.
class FakeMetricsServer final : public ports::MetricsServer {
 public:
  std::optional<std::string> listen(const ports::ListenAddress& address, Source source) override {
    if (problem) return problem;
    listening = address;
    source_ = std::move(source);
    return std::nullopt;
  }

  ports::MetricFamilies scrape() const { return source_(); }

  std::optional<std::string> problem;             ///< why it can't listen, if the test says so
  std::optional<ports::ListenAddress> listening;  ///< once it does

 private:
  Source source_;
};

}  // namespace pallimo::fakes
