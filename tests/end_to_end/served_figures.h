// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>

namespace pallimo::end_to_end {

/// `name{labels}` and its figure.
using Figures = std::map<std::string, double>;

/// The series of a scrape.
inline Figures figuresOfScrape(const std::string& text) {
  Figures figures;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("pallimo_", 0) != 0) continue;
    const std::size_t space = line.rfind(' ');
    figures[line.substr(0, space)] = std::stod(line.substr(space + 1));
  }
  return figures;
}

/// Milliseconds since 1970 of a line's time, "2026-03-05T14:02:33.123+00:00". The tests' apps run
/// in UTC.
inline long long millisecondsOf(const std::string& isoTime) {
  std::tm utc = {};
  int milliseconds = 0;
  std::sscanf(isoTime.c_str(), "%d-%d-%dT%d:%d:%d.%d", &utc.tm_year, &utc.tm_mon, &utc.tm_mday,
              &utc.tm_hour, &utc.tm_min, &utc.tm_sec, &milliseconds);
  utc.tm_year -= 1900;
  utc.tm_mon -= 1;
  return static_cast<long long>(timegm(&utc)) * 1000 + milliseconds;
}

/// The series that must stand beside this line of JSON: its figures in base units. A frequency or
/// power of 0 is left out, since it may not have been measured: whether it is there is told by
/// other tests.
inline Figures figuresOfLine(const nlohmann::json& line) {
  struct Rule {
    const char* series;
    const char* field;
    double factor;
  };
  static constexpr Rule kRules[] = {
      {R"(pallimo_power_watts{domain="package"})", "pkgPower", 1},
      {R"(pallimo_power_watts{domain="cpu"})", "cpuPower", 1},
      {R"(pallimo_power_watts{domain="gpu"})", "gpuPower", 1},
      {R"(pallimo_power_watts{domain="dram"})", "dramPower", 1},
      {R"(pallimo_power_watts{domain="ane"})", "anePower", 1},
      {R"(pallimo_frequency_hertz{domain="efficiency_cores"})", "cpuECoreFrequency", 1e6},
      {R"(pallimo_frequency_hertz{domain="performance_cores"})", "cpuPCoreFrequency", 1e6},
      {R"(pallimo_frequency_hertz{domain="gpu"})", "gpuFrequency", 1e6},
      {R"(pallimo_temperature_celsius{domain="cpu",statistic="min"})", "cpuMinTmp", 1},
      {R"(pallimo_temperature_celsius{domain="cpu",statistic="avg"})", "cpuAvgTmp", 1},
      {R"(pallimo_temperature_celsius{domain="cpu",statistic="max"})", "cpuMaxTmp", 1},
      {R"(pallimo_temperature_celsius{domain="gpu",statistic="avg"})", "gpuAvgTmp", 1},
      {R"(pallimo_utilization_ratio{domain="cpu"})", "cpuUtilization", 0.01},
      {R"(pallimo_utilization_ratio{domain="efficiency_cores"})", "cpuEUtilization", 0.01},
      {R"(pallimo_utilization_ratio{domain="performance_cores"})", "cpuPUtilization", 0.01},
      {R"(pallimo_utilization_ratio{domain="gpu"})", "gpuUtilization", 0.01}};
  Figures figures;
  for (const Rule& rule : kRules) {
    const nlohmann::json& value = line[rule.field];
    if (value.is_null() || value.get<double>() == -1 || value.get<double>() == 0) continue;
    figures[rule.series] = value.get<double>() * rule.factor;
  }
  return figures;
}

/// Figures are served with sixteen digits, one less than it takes to write any number exactly.
inline bool isSameFigure(double served, double printed) {
  return std::abs(served - printed) <= 2e-15 * std::abs(printed);
}

/// The line of the sample that was taken at that time, s since 1970.
inline std::optional<nlohmann::json> lineOfTime(const std::string& printed, double time) {
  std::istringstream lines(printed);
  for (std::string line; std::getline(lines, line);) {
    auto parsed = nlohmann::json::parse(line);
    if (millisecondsOf(parsed["timeStamp"]) == std::llround(time * 1000)) return parsed;
  }
  return std::nullopt;
}

/// Every figure of the line is served, and none that is served differs from it.
inline void expectSameFigures(const Figures& served, const nlohmann::json& line) {
  const Figures printed = figuresOfLine(line);
  EXPECT_GE(printed.size(), 8u) << line;
  for (const auto& [series, figure] : printed) {
    const auto found = served.find(series);
    ASSERT_NE(found, served.end()) << series;
    EXPECT_TRUE(isSameFigure(found->second, figure))
        << series << ": " << found->second << ", not " << figure;
  }
  for (const auto& [series, figure] : served) {
    const bool isOfSample = series.find("domain=") != std::string::npos;
    if (!isOfSample || printed.count(series) == 1) continue;
    EXPECT_EQ(figure, 0) << series;
  }
}

}  // namespace pallimo::end_to_end
