// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "end_to_end/app_fixture.h"
#include "end_to_end/app_process.h"
#include "end_to_end/served_figures.h"
#include "end_to_end/untested.h"
#include "fakes/local_http.h"

namespace pallimo::end_to_end {
namespace {

using tests::httpGet;

const std::string kPackagePower = "pallimo_power_watts{domain=\"package\"}";

class Serving : public AppWithHelperTest {
 protected:
  Serving() : port_(tests::freePort()) {}

  std::string address() const { return "127.0.0.1:" + std::to_string(port_); }
  std::unique_ptr<AppProcess> startServing(Texts arguments, const Texts& environment = {}) const {
    arguments.insert(arguments.begin(), {"--serve", address()});
    return startHeadless(arguments, "state", environment);
  }
  Figures scrape() const { return figuresOfScrape(httpGet(port_, "/metrics").body); }

  /// The first scrape that tells the series with this figure, or with any; the last one tried when
  /// none does in time.
  Figures scrapeUntil(const std::string& series, std::optional<double> figure = {}) const {
    const auto deadline = std::chrono::steady_clock::now() + kGenerous;
    for (;;) {
      Figures scraped = scrape();
      const auto found = scraped.find(series);
      const bool isTold = found != scraped.end() && (!figure || found->second == *figure);
      if (isTold || std::chrono::steady_clock::now() > deadline) return scraped;
      poll(nullptr, 0, 20);
    }
  }

  /// A run that ends at once: its status and what it says.
  std::string endOf(const Texts& arguments) const {
    const auto app = startHeadless(arguments);
    const int status = app->exitStatus().value_or(-1);
    return std::to_string(status) + " " + app->errorText();
  }

  const std::uint16_t port_;
};

TEST_F(Serving, AScrapeTellsASampleAsItIsPrinted) {
  const auto app = startServing({"--format", "json", "--machine", "MacBook Air M1"}, {"TZ=UTC"});
  std::string printed = app->readLine().value_or("") + "\n";
  const Figures scraped = scrape();
  app->send(SIGTERM);
  EXPECT_EQ(app->exitStatus(), 0) << app->errorText();
  printed += app->readAll();
  ASSERT_EQ(scraped.count("pallimo_last_sample_timestamp_seconds"), 1u);
  const auto line = lineOfTime(printed, scraped.at("pallimo_last_sample_timestamp_seconds"));
  ASSERT_TRUE(line) << printed;
  expectSameFigures(scraped, *line);
  EXPECT_EQ(scraped.at("pallimo_helper_up"), 1);
  // Not in this machine's documents: printed as 0, but not served.
  EXPECT_EQ((*line)["dramPower"], 0);
  EXPECT_EQ(scraped.count("pallimo_power_watts{domain=\"dram\"}"), 0u);
  EXPECT_EQ(scraped.count("pallimo_frequency_hertz{domain=\"gpu\"}"), 0u);
}

TEST_F(Serving, NobodyListensUnlessAsked) {
  const auto app = startHeadless({"--samples", "1"});
  ASSERT_TRUE(app->readLine());
  EXPECT_EQ(httpGet(port_, "/metrics").status, 0);
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(Serving, AWindowServesToo) {
  const auto app =
      start({"--state-dir", stateFolder(), "--serve", address()}, {"QT_QPA_PLATFORM=offscreen"});
  const Figures scraped = scrapeUntil(kPackagePower);
  EXPECT_EQ(scraped.count(kPackagePower), 1u) << app->errorText();
  app->send(SIGTERM);
  EXPECT_EQ(app->exitStatus(), 0) << app->errorText();
}

TEST_F(Serving, FiguresGoWithTheHelper) {
  const auto app =
      start({"--state-dir", stateFolder(), "--serve", address()}, {"QT_QPA_PLATFORM=offscreen"});
  ASSERT_EQ(scrapeUntil(kPackagePower).count(kPackagePower), 1u) << app->errorText();
  for (const WatchedProcess& helper : helpersOf()) helper.send(SIGKILL);
  const Figures scraped = scrapeUntil("pallimo_helper_up", 0);
  ASSERT_EQ(scraped.count("pallimo_samples_total"), 1u) << app->errorText();
  EXPECT_EQ(scraped.at("pallimo_helper_up"), 0);
  EXPECT_GE(scraped.at("pallimo_samples_total"), 1);
  // The histories are emptied a moment later.
  const auto deadline = std::chrono::steady_clock::now() + kGenerous;
  while (scrape().count(kPackagePower) == 1 && std::chrono::steady_clock::now() < deadline) {
    poll(nullptr, 0, 20);
  }
  EXPECT_EQ(scrape().count(kPackagePower), 0u);
  app->send(SIGTERM);
  EXPECT_EQ(app->exitStatus(), 0) << app->errorText();
}

TEST_F(Serving, AScrapeWaitsForNoSample) {
  const auto app = startServing({});
  ASSERT_TRUE(app->readLine()) << app->errorText();
  for (const WatchedProcess& helper : helpersOf()) helper.send(SIGSTOP);
  const Figures first = scrape();
  const Figures second = scrape();
  EXPECT_EQ(first.count(kPackagePower), 1u);
  EXPECT_EQ(second.count(kPackagePower), 1u);
  for (const WatchedProcess& helper : helpersOf()) helper.send(SIGCONT);
  app->send(SIGTERM);
  EXPECT_EQ(app->exitStatus(), 0) << app->errorText();
}

TEST_F(Serving, WithoutAHelperItSaysSo) {
  fs::remove_all(helperPath());
  const auto app = startServing({});
  const Figures scraped = scrapeUntil("pallimo_helper_up");
  ASSERT_FALSE(scraped.empty()) << app->errorText();
  EXPECT_EQ(scraped.at("pallimo_helper_up"), 0);
  EXPECT_EQ(scraped.at("pallimo_samples_total"), 0);
  EXPECT_EQ(scraped.count("pallimo_last_sample_timestamp_seconds"), 0u);
}

TEST_F(Serving, APortInUseEndsTheRun) {
  const tests::Socket other;
  ASSERT_TRUE(tests::bindsTo(other, port_));
  ASSERT_EQ(listen(other.number(), 1), 0);
  EXPECT_EQ(endOf({"--serve", address()}),
            "2 pallimo: can't serve on " + address() + ": the port is in use\n");
}

TEST_F(Serving, APortInUseIsFoundBeforeThereIsAWindow) {
  const tests::Socket other;
  ASSERT_TRUE(tests::bindsTo(other, port_));
  ASSERT_EQ(listen(other.number(), 1), 0);
  const auto app =
      start({"--state-dir", stateFolder(), "--serve", address()}, {"QT_QPA_PLATFORM=offscreen"});
  EXPECT_EQ(app->exitStatus(), 2);
  // Behind whatever Qt has to say of the machine.
  const std::string said = app->errorText();
  const std::string line = "pallimo: can't serve on " + address() + ": the port is in use\n";
  EXPECT_EQ(said.substr(std::min(said.find("pallimo: "), said.size())), line) << said;
}

TEST_F(Serving, AnotherMachinesAddressEndsTheRun) {
  EXPECT_EQ(endOf({"--serve", "192.0.2.1:9123"}),
            "2 pallimo: can't serve on 192.0.2.1:9123: the address is not this machine's\n");
}

TEST_F(Serving, AMalformedAddressEndsTheRun) {
  EXPECT_EQ(endOf({"--serve", "127.0.0.1"}),
            "2 pallimo: --serve takes ADDRESS:PORT such as 127.0.0.1:9123, not \"127.0.0.1\"; see "
            "pallimo --help\n");
  EXPECT_EQ(endOf({"--serve", "127.0.0.1:65536"}),
            "2 pallimo: --serve takes a port from 1 to 65535, not \"127.0.0.1:65536\"; see pallimo "
            "--help\n");
}

/// What Prometheus's own tool says to a scrape; it is nothing.
class ServingToPromtool : public Serving {
 protected:
  /// Their names, which end where the list's second column begins.
  Texts builtInMachines() const {
    std::istringstream list(start({"--list-machines"})->readAll());
    Texts names;
    for (std::string line; std::getline(list, line);) {
      names.push_back(line.substr(0, line.find("  ")));
    }
    return names;
  }
  std::string opinionOf(const std::string& scrape) const {
    const fs::path text = root_ / "metrics";
    std::ofstream(text) << scrape;
    const fs::path said = root_ / "said";
    const std::string command = "promtool check metrics < " + text.string() + " > " + said.string();
    const int status = std::system((command + " 2>&1").c_str());
    return (status == 0 ? "" : "failed: ") + textOf(said);
  }
};

TEST_F(ServingToPromtool, EveryMachineIsInOrder) {
  if (!programInPath("promtool")) return reportNoPrometheus("promtool is not installed");
  const Texts machines = builtInMachines();
  EXPECT_GE(machines.size(), 7u);
  for (const std::string& machine : machines) {
    const auto app = startServing({"--machine", machine, "--speed", "10"});
    ASSERT_TRUE(app->readLine()) << machine << ": " << app->errorText();
    const std::string scraped = httpGet(port_, "/metrics").body;
    EXPECT_EQ(figuresOfScrape(scraped).count(kPackagePower), 1u) << machine;
    EXPECT_EQ(opinionOf(scraped), "") << machine;
    app->send(SIGTERM);
    EXPECT_EQ(app->exitStatus(), 0) << machine;
  }
}

TEST_F(ServingToPromtool, WithoutASampleItIsInOrderToo) {
  if (!programInPath("promtool")) return reportNoPrometheus("promtool is not installed");
  fs::remove_all(helperPath());
  const auto app = startServing({});
  ASSERT_FALSE(scrapeUntil("pallimo_helper_up").empty()) << app->errorText();
  const std::string scraped = httpGet(port_, "/metrics").body;
  EXPECT_NE(scraped.find("pallimo_helper_up 0"), std::string::npos) << scraped;
  EXPECT_EQ(opinionOf(scraped), "");
}

/// s of processor time that a process has taken, all its threads together.
double processorTime(pid_t process) {
  const std::string text = textOf("/proc/" + std::to_string(process) + "/stat");
  std::istringstream fields(text.substr(text.rfind(')') + 2));
  std::string skipped;
  for (int field = 3; field < 14; ++field) fields >> skipped;
  double user = 0;
  double system = 0;
  fields >> user >> system;
  return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

/// What a hundred scrapes a second find.
struct Storm {
  int unanswered = 0;
  std::map<double, double> samples;  ///< how many were counted, by the last one's time
  double coreShare = 0;              ///< of the app's threads together, sampling included
  double ownShare = 0;               ///< of whoever scrapes
};

/// How many samples were printed up to the one of that time; 0: it was not printed.
double linesUpTo(double time, const std::string& printed) {
  std::istringstream lines(printed);
  double count = 0;
  for (std::string line; std::getline(lines, line);) {
    ++count;
    const std::string at = nlohmann::json::parse(line)["timeStamp"];
    if (millisecondsOf(at) == std::llround(time * 1000)) return count;
  }
  return 0;
}

TEST_F(Serving, AStormOfScrapesCostsLittleAndLosesNoSample) {
  constexpr int kScrapes = 300;
  const auto app = startServing({"--format", "json"}, {"TZ=UTC"});
  std::string printed = app->readLine().value_or("") + "\n";
  Storm seen;
  const double before = processorTime(app->number());
  const double ownBefore = processorTime(getpid());
  const auto begin = std::chrono::steady_clock::now();
  for (int scrapes = 0; scrapes < kScrapes; ++scrapes) {
    std::this_thread::sleep_until(begin + scrapes * std::chrono::milliseconds(10));
    const Figures scraped = scrape();
    if (scraped.count(kPackagePower) == 0) {
      ++seen.unanswered;
    } else {
      seen.samples[scraped.at("pallimo_last_sample_timestamp_seconds")] =
          scraped.at("pallimo_samples_total");
    }
  }
  seen.coreShare = (processorTime(app->number()) - before) / kScrapes * 100;
  seen.ownShare = (processorTime(getpid()) - ownBefore) / kScrapes * 100;
  app->send(SIGTERM);
  EXPECT_EQ(app->exitStatus(), 0);
  printed += app->readAll();

  std::printf(
      "%d scrapes, a hundred a second: %.2f ms of processor time each, %.1f %% of a core, "
      "sampling included; the test itself %.1f %%; %zu samples seen\n",
      kScrapes, seen.coreShare * 10, seen.coreShare * 100, seen.ownShare * 100,
      seen.samples.size());
  EXPECT_EQ(seen.unanswered, 0);
  // 5 % of a core; of a slow one twice the test's own work, which is the same each time.
  EXPECT_LE(seen.coreShare, std::max(0.05, 2 * seen.ownShare));
  EXPECT_GE(seen.samples.size(), 1u);
  for (const auto& [time, samples] : seen.samples) {
    EXPECT_EQ(samples, linesUpTo(time, printed)) << "at " << time << " of\n" << printed;
  }
}

}  // namespace
}  // namespace pallimo::end_to_end
