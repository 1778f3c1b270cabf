// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The recordings of tests/recordings once more, read through the Mac's own adapters over the fakes:
// the rows must be those that the simulated adapters give.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "adapters/macos/c_adapters.h"
#include "darwin/fakes/fake_mac.h"
#include "scenarios/recorded_mac.h"

namespace pallimo::darwin {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;
using scenarios::RecordedMac;

const std::string kRecordings = PALLIMO_SOURCE_DIR "/tests/recordings";

Lines recordings() {
  Lines names;
  for (const auto& entry : fs::directory_iterator(kRecordings)) {
    if (entry.is_directory()) names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Lines linesOf(const std::string& recording, const std::string& file) {
  Lines lines;
  std::ifstream stream(kRecordings + "/" + recording + "/" + file);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// "smc-key-count-zero" as a word that a test's name may hold.
std::string testName(const testing::TestParamInfo<std::string>& info) {
  std::string name;
  bool startsWord = true;
  for (const char c : info.param) {
    if (c != '-') name += startsWord ? static_cast<char>(std::toupper(c)) : c;
    startsWord = c == '-';
  }
  return name;
}

/// The Mac's adapters, over fakes that ask a machine's sensors.
class MacAdapters {
 public:
  RecordedMac::Sensors over(const RecordedMac::Sensors& machine) {
    mac_.systemControls = &machine.systemControls;
    mac_.smcDevice = &machine.smcDevice;
    mac_.hidSensors = &machine.hidSensors;
    mac_.accelerators = &machine.accelerators;
    mac_.processorTicks = &machine.processorTicks;
    return {*controls_, *smc_, *hid_, *accelerators_, *ticks_};
  }

  const FakeMac& mac() const { return mac_; }

 private:
  FakeMac mac_;
  const std::unique_ptr<ports::SystemControls> controls_ = adapters::macos::makeSystemControls();
  const std::unique_ptr<ports::SmcDevice> smc_ = adapters::macos::makeSmcDevice();
  const std::unique_ptr<ports::HidSensors> hid_ = adapters::macos::makeHidSensors();
  const std::unique_ptr<ports::AcceleratorRegistry> accelerators_ =
      adapters::macos::makeAcceleratorRegistry();
  const std::unique_ptr<ports::ProcessorTicks> ticks_ = adapters::macos::makeProcessorTicks();
};

class RecordedOnAMac : public testing::TestWithParam<std::string> {
 protected:
  /// At the end nothing was done wrong, and nothing is held but what the SMC's searches found, the
  /// main port, and the host's port of the adapter that is still there.
  void TearDown() override {
    EXPECT_EQ(adapters_.mac().complaints(), Lines{});
    for (const std::string& line : adapters_.mac().held()) {
      const std::string kind = line.substr(line.find(" x ") + 3);
      EXPECT_TRUE(kind == "main port" || kind == "iterator of AppleSMC" ||
                  kind == "service AppleSMC" || line == "1 x host port")
          << line;
    }
  }

  MacAdapters adapters_;
};

TEST_P(RecordedOnAMac, GivesTheSameRowsAndTitle) {
  const Lines rows = linesOf(GetParam(), "expected.csv");
  RecordedMac mac(kRecordings + "/" + GetParam(), std::nullopt,
                  [this](const auto& machine) { return adapters_.over(machine); });
  EXPECT_EQ(Lines{mac.title()}, linesOf(GetParam(), "expected_title.txt"));
  for (std::size_t row = 0; row < rows.size(); ++row) {
    EXPECT_EQ(mac.nextRow(), rows[row]) << "request " << row + 1;
  }
}

INSTANTIATE_TEST_SUITE_P(All, RecordedOnAMac, testing::ValuesIn(recordings()), testName);

}  // namespace
}  // namespace pallimo::darwin
