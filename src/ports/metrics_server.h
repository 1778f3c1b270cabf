// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pallimo::ports {

/// Where to listen.
struct ListenAddress {
  std::string host;  ///< numeric: "127.0.0.1", or "::1" without brackets
  std::uint16_t port = 0;
  bool operator==(const ListenAddress&) const = default;
};

/// One figure of a family and the labels that tell it from the others.
struct MetricSeries {
  std::vector<std::pair<std::string, std::string>> labels;  ///< name and value
  double value = 0;
  bool operator==(const MetricSeries&) const = default;
};

/// Figures of one name, with one help text.
struct MetricFamily {
  enum class Kind {
    gauge,    ///< goes up and down
    counter,  ///< goes up alone, from 0 when the program starts
  };

  std::string name;
  std::string help;
  Kind kind = Kind::gauge;
  std::vector<MetricSeries> series;
  bool operator==(const MetricFamily&) const = default;
};

using MetricFamilies = std::vector<MetricFamily>;

/// Answers scrapes of `/metrics` over HTTP, in Prometheus's text format, until it goes. Main
/// thread.
class MetricsServer {
 public:
  /// What there is to say at the moment. Called for each scrape, on a thread of the server's, also
  /// on two at once; must not block.
  using Source = std::function<MetricFamilies()>;

  virtual ~MetricsServer() = default;

  /// Listens from now on, once in its life. Nothing when it does, else the reason, without the
  /// address: "the port is in use".
  virtual std::optional<std::string> listen(const ListenAddress& address, Source source) = 0;
};

}  // namespace pallimo::ports
