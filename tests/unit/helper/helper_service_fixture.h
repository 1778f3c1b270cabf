// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/fake_child_processes.h"
#include "fakes/fake_helper_listener.h"
#include "fakes/manual_main_queue.h"
#include "fakes/recording_lines.h"
#include "helper/helper_service.h"

namespace pallimo::helper {

/// Files whose removal is only counted.
class CountingHelperFiles final : public ports::HelperFiles {
 public:
  void removeInstalled() override { ++removals; }

  int removals = 0;
};

/// A helper that listens, on fakes.
class HelperServiceTest : public ::testing::Test {
 protected:
  HelperServiceTest() { EXPECT_TRUE(service->start()); }

  void pass(std::chrono::milliseconds time) { mainQueue.advance(time); }
  /// A client's request of the usual kind.
  static void request(const fakes::FakeHelperClient& client) {
    client.helper->requestPowermetrics(1000, false);
  }

  fakes::ManualMainQueue mainQueue;
  fakes::FakeChildProcesses children;
  fakes::RecordingSystemLog log;
  CountingHelperFiles files;
  int exits = 0;
  PowermetricsRuns runs{{children, log}, {"/usr/bin/powermetrics", true, nullptr}};
  fakes::FakeHelperListener listener;
  std::shared_ptr<HelperService> service =
      std::make_shared<HelperService>(HelperService::Services{mainQueue, listener, files, runs},
                                      HelperService::Settings{"1.2.3"}, [this] { ++exits; });
};

using Results = std::vector<std::string>;
inline constexpr const char* kAbsent = fakes::FakeHelperPeer::kAbsent;

}  // namespace pallimo::helper
