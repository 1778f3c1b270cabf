// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <sstream>
#include <string>

#include "ports/metrics_server.h"

namespace pallimo::tests {

/// `name{label="value",...} figure`, one line a series, as scrapes look; without help and kind.
inline std::string seriesText(const ports::MetricFamilies& families) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text.precision(16);
  for (const ports::MetricFamily& family : families) {
    for (const ports::MetricSeries& series : family.series) {
      text << family.name;
      for (std::size_t label = 0; label < series.labels.size(); ++label) {
        text << (label == 0 ? '{' : ',') << series.labels[label].first << "=\""
             << series.labels[label].second << '"';
      }
      text << (series.labels.empty() ? " " : "} ") << series.value << '\n';
    }
  }
  return text.str();
}

/// Whether a series of this beginning is among them.
inline bool holdsSeries(const ports::MetricFamilies& families, const std::string& beginning) {
  return ("\n" + seriesText(families)).find("\n" + beginning) != std::string::npos;
}

}  // namespace pallimo::tests
