// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/headless/headless_run.h"
#include "app/models/general_model.h"
#include "app/served_metrics.h"
#include "fakes/fake_platform.h"
#include "fakes/recording_output.h"
#include "scenarios/faulty_ports.h"
#include "scenarios/faulty_world.h"
#include "unit/base/zone_scope.h"

namespace pallimo::scenarios {

/// What a user sees of one second.
struct SeenSecond {
  /// The lines that the run printed, without a header: times and figures.
  std::vector<std::string> rows;
  /// What became of a log that was on during this second: "saved in FOLDER", "error WHY" or
  /// "nothing yet".
  std::string log;
  /// What "Check for Update" gave: "checks" or "error WHY".
  std::string update;
  /// The package's power that a scrape finds, in watts, or "none".
  std::string served;
  bool operator==(const SeenSecond&) const = default;
};

/// The whole program without Qt in a world that fails as it is told to: a run that presses the
/// buttons itself and prints CSV, with metrics served, and a log that is on for every second of it.
/// One second at a time, on clocks that the test moves.
class FaultyMac {
 public:
  explicit FaultyMac(FaultyWorld world = {}) : world_(std::move(world)) {
    platform_.clock.set(kStart);
    apply();
  }
  ~FaultyMac() {
    // What hangs or is stuck holds nothing any more when the parts go.
    world_.backgroundIsStuck = false;
    background_.run();
    queue().run();
  }
  FaultyMac(const FaultyMac&) = delete;
  FaultyMac& operator=(const FaultyMac&) = delete;

  /// The program starts and whoever was asked answers. The rows that were printed at once.
  std::vector<std::string> start();
  /// From now on the world is another one.
  void change(const FaultyWorld& world) {
    world_ = world;
    apply();
  }
  /// One second passes, and whoever was asked answers.
  SeenSecond second();

  void helperDies() {
    connector().latest()->interrupt();
    queue().run();
  }
  void connectionIsInvalidated() {
    connector().latest()->fireInvalidation();
    queue().run();
  }

  /// "running", or the status and line of a run that has ended.
  std::string ending() const;
  /// Chip, GPU, efficiency cores, performance cores, GPU cores, as one line.
  std::string title() const;
  std::size_t launchesTold() { return platform_.desktop.analyticsClient.takeSent().size(); }
  app::GeneralModel& general() { return *general_; }

 private:
  static constexpr std::chrono::system_clock::time_point kStart{
      std::chrono::milliseconds(1772715753123)};  // 2026-03-05 13:02:33.123 UTC
  static constexpr const char* kLogTrouble = "error ";

  fakes::ManualMainQueue& queue() { return platform_.mainQueue; }
  fakes::FakeHelperConnector& connector() { return platform_.helperConnector; }

  app::Platform platform();
  void apply();
  void applySettings();
  void store(const char* key, const std::optional<std::string>& value,
             std::optional<std::string>& stored);
  void passTime();
  bool takeRequests();
  void letHelperAnswer();
  bool helperAnswersSomething();
  std::vector<std::string> rowsPrinted();
  std::string whatBecameOfTheLog();
  std::string whatCheckingGave();
  std::string whatIsServed();

  const tests::ZoneScope zone_{"UTC"};
  FaultyWorld world_;
  std::optional<std::string> storedPeriod_;
  std::optional<std::string> storedGpuFrequency_;
  std::optional<std::string> storedUnit_;
  std::optional<std::string> storedFolder_;

  fakes::FakePlatform platform_;
  SteppingTicks ticks_{world_};
  ChangingControls controls_{world_};
  ReadOnlyDefaults defaults_{world_};
  StickyBackgroundQueue background_{world_};
  RepeatingNumbers random_{world_};
  fakes::RecordingOutput output_;

  std::optional<app::GeneralModel> general_;
  app::ServedMetrics served_{"1.0"};
  std::shared_ptr<app::HeadlessRun> run_;
  std::vector<app::RunEnd> ends_;

  int seconds_ = 0;
  std::size_t owed_ = 0;     ///< results of the present connection
  std::size_t overdue_ = 0;  ///< those of them that a helper that is late gives now
};

}  // namespace pallimo::scenarios
