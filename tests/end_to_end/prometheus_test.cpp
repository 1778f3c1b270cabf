// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// A real Prometheus server scrapes two apps and answers queries.

#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "end_to_end/app_fixture.h"
#include "end_to_end/app_process.h"
#include "end_to_end/served_figures.h"
#include "end_to_end/untested.h"
#include "fakes/local_http.h"

namespace pallimo::end_to_end {
namespace {

std::string loopback(std::uint16_t port) { return "127.0.0.1:" + std::to_string(port); }

/// The server, with a folder of its own, on the loopback.
class PrometheusServer {
 public:
  PrometheusServer(const std::string& program, const fs::path& folder,
                   const std::vector<std::string>& targets)
      : port_(tests::freePort()) {
    fs::create_directory(folder);
    std::ofstream configuration(folder / "prometheus.yml");
    configuration << "global: {scrape_interval: 200ms, scrape_timeout: 200ms}\n"
                  << "scrape_configs:\n- job_name: pallimo\n  static_configs:\n  - targets: [";
    for (const std::string& target : targets) configuration << '"' << target << "\", ";
    configuration << "]\n";
    configuration.close();
    AppProcess::Conditions conditions;
    conditions.program = program;
    process_ = std::make_unique<AppProcess>(
        AppProcess::Texts{"--config.file=" + (folder / "prometheus.yml").string(),
                          "--storage.tsdb.path=" + (folder / "data").string(),
                          "--web.listen-address=" + loopback(port_)},
        folder / "said", AppProcess::Texts(), std::nullopt, conditions);
  }

  std::string said() const { return process_->errorText(); }

  /// The result of a query; null when the server does not answer it.
  nlohmann::json query(const std::string& expression) const {
    const auto answer = tests::httpGet(port_, "/api/v1/query?query=" + escaped(expression));
    if (answer.status != 200) return nullptr;
    // Answers come in chunks: what stands between the braces is the object.
    return nlohmann::json::parse(withoutChunks(answer), nullptr, false)["data"]["result"];
  }

  std::optional<int> stop() {
    process_->send(SIGTERM);
    return process_->exitStatus();
  }

 private:
  static std::string escaped(const std::string& text) {
    std::string out;
    char hex[4];
    for (const char letter : text) {
      std::snprintf(hex, sizeof hex, "%%%02X", static_cast<unsigned char>(letter));
      out += hex;
    }
    return out;
  }

  static std::string withoutChunks(const tests::HttpAnswer& answer) {
    if (answer.head.find("chunked") == std::string::npos) return answer.body;
    std::string whole;
    std::size_t at = 0;
    for (;;) {
      const std::size_t size = std::strtoul(answer.body.c_str() + at, nullptr, 16);
      const std::size_t begin = answer.body.find("\r\n", at);
      if (size == 0 || begin == std::string::npos) return whole;
      whole += answer.body.substr(begin + 2, size);
      at = begin + 2 + size + 2;
    }
  }

  const std::uint16_t port_;
  std::unique_ptr<AppProcess> process_;
};

/// What the server calls a series: its name and labels without those that it adds.
std::string seriesNameOf(const nlohmann::json& metric) {
  std::string name = metric["__name__"];
  const char* separator = "{";
  for (const char* label : {"domain", "statistic"}) {
    if (!metric.contains(label)) continue;
    name += separator + std::string(label) + "=\"" + metric[label].get<std::string>() + "\"";
    separator = ",";
  }
  return *separator == ',' ? name + "}" : name;
}

/// Each scrape of an app that the server remembers, by its time.
std::map<double, Figures> scrapesOf(const nlohmann::json& result, const std::string& instance) {
  std::map<double, Figures> scrapes;
  for (const nlohmann::json& series : result) {
    if (series["metric"]["instance"] != instance) continue;
    for (const nlohmann::json& value : series["values"]) {
      scrapes[value[0]][seriesNameOf(series["metric"])] = std::stod(value[1].get<std::string>());
    }
  }
  return scrapes;
}

class Prometheus : public AppTest {
 protected:
  /// One simulated machine that serves.
  struct Machine {
    Machine(std::string itsName, std::string itsState)
        : name(std::move(itsName)), state(std::move(itsState)) {}

    const std::string name;
    const std::string state;
    const std::uint16_t port = tests::freePort();
    std::unique_ptr<AppProcess> app;
    std::string printed;
  };

  void start(Machine& machine) {
    installHelper(machine.state);
    machine.app = startHeadless(
        {"--format", "json", "--machine", machine.name, "--serve", loopback(machine.port)},
        machine.state, {"TZ=UTC"});
  }
  /// Ends the run and keeps what it printed.
  static void end(Machine& machine) {
    machine.app->send(SIGTERM);
    EXPECT_EQ(machine.app->exitStatus(), 0) << machine.app->errorText();
    machine.printed = machine.app->readAll();
  }

  /// Everything that the server has scraped, once each machine has told it at least two samples.
  /// The first of an app may come before the server looks: the third has one before it.
  static nlohmann::json everythingScraped(const PrometheusServer& server) {
    const auto deadline = std::chrono::steady_clock::now() + kGenerous;
    for (;;) {
      const auto machines = server.query("count(pallimo_samples_total >= 3)");
      const bool areBothThere = machines.is_array() && machines.size() == 1 &&
                                machines[0]["value"][1].get<std::string>() == "2";
      const bool isSecondSample =
          areBothThere && server.query("min(changes(pallimo_samples_total[1m])) >= 1").size() == 1;
      if (isSecondSample || std::chrono::steady_clock::now() > deadline) break;
      poll(nullptr, 0, 100);
    }
    return server.query("{__name__=~\"pallimo_.*\"}[1h]");
  }

  /// The model and the chip that the server knows a machine by.
  static std::string machineOf(const nlohmann::json& result, const Machine& machine) {
    for (const nlohmann::json& series : result) {
      const nlohmann::json& metric = series["metric"];
      if (metric["instance"] != loopback(machine.port)) continue;
      return metric["model"].get<std::string>() + ", " + metric["chip"].get<std::string>();
    }
    return "none";
  }

  /// Compares every scrape with the line of its sample; how many samples were compared.
  static std::size_t compare(const std::map<double, Figures>& scrapes, const std::string& printed) {
    std::set<double> samples;
    for (const auto& [time, figures] : scrapes) {
      const auto sample = figures.find("pallimo_last_sample_timestamp_seconds");
      if (sample == figures.end()) continue;
      samples.insert(sample->second);
      const auto line = lineOfTime(printed, sample->second);
      EXPECT_TRUE(line) << printed;
      if (line) expectSameFigures(figures, *line);
    }
    return samples.size();
  }
};

TEST_F(Prometheus, AnswersQueriesWithTheFiguresThatTwoMachinesPrint) {
  const auto program = programInPath("prometheus");
  if (!program) return reportNoPrometheus("Prometheus is not installed");
  Machine laptop("MacBook Pro M2 Pro", "laptop");
  Machine studio("Mac Studio M2 Ultra", "studio");
  PrometheusServer server(*program, root_ / "prometheus",
                          {loopback(laptop.port), loopback(studio.port)});
  start(laptop);
  start(studio);

  const nlohmann::json everything = everythingScraped(server);
  const nlohmann::json machines = server.query("pallimo_machine_info");
  end(laptop);
  end(studio);
  EXPECT_EQ(server.stop(), 0) << server.said();

  ASSERT_TRUE(everything.is_array()) << server.said();
  ASSERT_EQ(machines.size(), 2u) << machines;
  EXPECT_EQ(machineOf(machines, laptop), "Mac14,9, Apple M2 Pro");
  EXPECT_EQ(machineOf(machines, studio), "Mac14,14, Apple M2 Ultra");
  EXPECT_GE(compare(scrapesOf(everything, loopback(laptop.port)), laptop.printed), 2u);
  EXPECT_GE(compare(scrapesOf(everything, loopback(studio.port)), studio.printed), 2u);
}

}  // namespace
}  // namespace pallimo::end_to_end
