// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "darwin/fakes/fake_mac.h"
#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_hid_sensors.h"
#include "fakes/fake_processor_ticks.h"
#include "fakes/fake_smc_device.h"
#include "fakes/fake_system_controls.h"

namespace pallimo::darwin {

using Lines = std::vector<std::string>;

/// A Mac with sensors of its own that a test fills.
struct TestMac {
  TestMac() {
    mac.smcDevice = &smc;
    mac.hidSensors = &hid;
    mac.accelerators = &accelerators;
    mac.processorTicks = &ticks;
    mac.systemControls = &controls;
  }

  fakes::FakeSmcDevice smc;
  fakes::FakeHidSensors hid;
  fakes::FakeAcceleratorRegistry accelerators;
  fakes::FakeProcessorTicks ticks;
  fakes::FakeSystemControls controls;
  FakeMac mac;  // what it still holds of the others goes first
};

/// A test on such a Mac. At its end nothing was done wrong and nothing is held but `kept_`.
class OnAMac : public testing::Test, protected TestMac {
 protected:
  void TearDown() override {
    EXPECT_EQ(mac.complaints(), Lines{});
    EXPECT_EQ(mac.held(), kept_);
  }

  Lines kept_;
};

/// What `use` gives on a Mac that `furnish` has filled when no call fails, and when each one fails
/// in turn: "IOServiceOpen: nothing". Whatever fails, nothing is done wrong, and nothing is held
/// but references to what is `kept`.
inline Lines outcomesOfEachFailure(const std::function<void(TestMac&)>& furnish,
                                   const std::function<std::string()>& use,
                                   const Lines& kept = {}) {
  Lines outcomes;
  Lines calls = {"no failure"};
  for (std::size_t failing = 0; failing < calls.size(); ++failing) {
    TestMac test;
    furnish(test);
    test.mac.failCall(failing);
    outcomes.push_back(calls[failing] + ": " + use());
    EXPECT_EQ(test.mac.complaints(), Lines{}) << failing << ". " << calls[failing];
    for (const std::string& line : test.mac.held()) {
      const std::string kind = line.substr(line.find(" x ") + 3);
      EXPECT_NE(std::find(kept.begin(), kept.end(), kind), kept.end())
          << line << " when " << failing << ". " << calls[failing] << " fails";
    }
    if (failing > 0) continue;
    const Lines& all = test.mac.fallibleCalls();
    calls.insert(calls.end(), all.begin(), all.end());
  }
  return outcomes;
}

}  // namespace pallimo::darwin
