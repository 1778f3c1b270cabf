// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/headless/headless_format.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <optional>

#include "app/headless/headless_table.h"
#include "base/civil_time.h"
#include "logging/log_file_data.h"

namespace pallimo::app {

namespace {

using Time = std::chrono::system_clock::time_point;

/// Remembers the time of the first row.
class FirstTime {
 public:
  Time of(const logging::LogRow& row) {
    if (!first_) first_ = row.time;
    return *first_;
  }
  bool isKnown() const { return first_.has_value(); }

 private:
  std::optional<Time> first_;
};

class CsvFormat final : public HeadlessFormat {
 public:
  std::string format(const HeadlessSample& sample) override {
    const logging::LogRow& row = sample.row;
    std::string text;
    if (!first_.isKnown()) {
      text += logging::kCsvHeader;
      text += '\n';
    }
    text += logging::csvLine(logging::formatRow(row, first_.of(row)));
    text += '\n';
    return text;
  }

 private:
  FirstTime first_;
};

class JsonFormat final : public HeadlessFormat {
 public:
  std::string format(const HeadlessSample& sample) override {
    return jsonLine(sample, first_.of(sample.row)) + '\n';
  }

 private:
  FirstTime first_;
};

class TableFormat final : public HeadlessFormat {
 public:
  std::string format(const HeadlessSample& sample) override {
    const logging::LogRow& row = sample.row;
    const Time first = first_.of(row);
    const bool isHeaderDue = rows_++ % kRowsBetweenHeaders == 0;
    return (isHeaderDue ? tableHeader() : std::string()) + tableLine(row, first);
  }

 private:
  // A header stays in sight on a terminal of 24 lines.
  static constexpr unsigned kRowsBetweenHeaders = 20;

  FirstTime first_;
  unsigned rows_ = 0;
};

double secondsBetween(Time first, Time second) {
  return std::chrono::duration<double>(second - first).count();
}

nlohmann::ordered_json jsonOf(const sampling::Cluster& cluster) {
  nlohmann::ordered_json object = {
      {"name", nullptr}, {"frequency", nullptr}, {"cpus", cluster.cpus}};
  if (cluster.name) object["name"] = *cluster.name;
  if (cluster.frequency) object["frequency"] = *cluster.frequency;
  return object;
}

}  // namespace

std::unique_ptr<HeadlessFormat> makeHeadlessFormat(OutputFormat format) {
  switch (format) {
    case OutputFormat::csv:
      return std::make_unique<CsvFormat>();
    case OutputFormat::json:
      return std::make_unique<JsonFormat>();
    case OutputFormat::table:
      break;
  }
  return std::make_unique<TableFormat>();
}

bool printsClusters(OutputFormat format) { return format == OutputFormat::json; }

std::string isoTime(Time time) {
  const base::CivilTime local = base::localTime(time);
  const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(base::offsetFromUtc(time));
  const long distance = std::labs(static_cast<long>(minutes.count()));
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03d%c%02ld:%02ld", local.year,
                local.month, local.day, local.hour, local.minute, local.second, local.millisecond,
                minutes.count() < 0 ? '-' : '+', distance / 60, distance % 60);
  return text;
}

std::string jsonLine(const HeadlessSample& sample, Time first) {
  const logging::LogRow& row = sample.row;
  // The library writes the shortest text that reads back as the same number, and null for what is
  // not finite.
  nlohmann::ordered_json object;
  object["timeStamp"] = isoTime(row.time);
  object["ellapsedTime"] = secondsBetween(first, row.time);
  object["pkgPower"] = row.pkgPower;
  object["cpuPower"] = row.cpuPower;
  object["dramPower"] = row.dramPower;
  object["anePower"] = row.anePower;
  object["gpuPower"] = row.gpuPower;
  object["cpuECoreFrequency"] = row.cpuECoreFrequency;
  object["cpuPCoreFrequency"] = row.cpuPCoreFrequency;
  object["gpuFrequency"] = row.gpuFrequency;
  object["cpuAvgTmp"] = row.cpuAvgTmp;
  object["cpuMaxTmp"] = row.cpuMaxTmp;
  object["cpuMinTmp"] = row.cpuMinTmp;
  object["gpuAvgTmp"] = row.gpuAvgTmp;
  object["cpuUtilization"] = row.cpuUtilization;
  object["cpuEUtilization"] = row.cpuEUtilization;
  object["cpuPUtilization"] = row.cpuPUtilization;
  object["gpuUtilization"] = row.gpuUtilization;
  nlohmann::ordered_json& clusters = object["clusters"] = nlohmann::ordered_json::array();
  for (const sampling::Cluster& cluster : sample.clusters) clusters.push_back(jsonOf(cluster));
  // A document's text may be no UTF-8.
  constexpr auto kReplaced = nlohmann::ordered_json::error_handler_t::replace;
  return object.dump(-1, ' ', false, kReplaced);
}

}  // namespace pallimo::app
