// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Failures while the program starts, alone and in pairs: what is read once stays as it was read,
// everything else is right when the failure ends.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <string>
#include <vector>

#include "scenarios/fault_expectation.h"
#include "scenarios/faulty_mac.h"

namespace pallimo::scenarios {
namespace {

/// What is known of a Mac for good once it has started.
struct StartedMac {
  std::string chip = "Apple M2 Pro";
  std::string gpu = "Apple M2 Pro";
  std::string efficiencyCores = "4";
  std::string performanceCores = "6";
  std::string gpuCores = "16";
  std::string cpuTemperature = "40, 48, 60";
  std::string gpuTemperature = "35";
};

struct StartFault {
  std::string name;
  std::string port;
  std::function<void(FaultyWorld&)> set;
  std::function<void(StartedMac&)> leaves = [](StartedMac&) {};
};

using World = FaultyWorld;

void leavesNoTemperature(StartedMac& mac) {
  mac.cpuTemperature = "-1, nan, -1";
  mac.gpuTemperature = "nan";
}
void leavesNoTp01(StartedMac& mac) { mac.cpuTemperature = "45, 52, 60"; }
void leavesNoGpuCores(StartedMac& mac) { mac.gpuCores = "-1"; }
void leavesNoGpu(StartedMac& mac) { mac.gpu = "Unknown"; }

/// Of two that leave something in the same place the later one counts.
const std::vector<StartFault>& startFaults() {
  static const std::vector<StartFault> all = {
      {"Tp01's index can't be read", "SmcDevice",
       [](World& world) { world.smcUnlisted.insert("Tp01"); }, leavesNoTp01},
      {"Tp01 tells no type", "SmcDevice", [](World& world) { world.smcUntold.insert("Tp01"); },
       leavesNoTp01},
      {"no key tells its type", "SmcDevice", [](World& world) { world.smcTellsKeyInfo = false; },
       leavesNoTemperature},
      {"the number of keys is far too large", "SmcDevice",
       [](World& world) { world.smcKeyCount = 2000; }},
      {"the number of keys is 0", "SmcDevice", [](World& world) { world.smcKeyCount = 0; },
       leavesNoTemperature},
      {"the number of keys can't be read", "SmcDevice",
       [](World& world) { world.smcTellsKeyCount = false; }, leavesNoTemperature},
      {"the SMC does not open", "SmcDevice", [](World& world) { world.smcOpens = false; },
       leavesNoTemperature},
      {"no SMC key can be read", "SmcDevice",
       // The number of keys is one of them.
       [](World& world) { world.smcReads = false; }, leavesNoTemperature},
      {"there is no accelerator", "AcceleratorRegistry",
       [](World& world) { world.accelerators.clear(); }, leavesNoGpu},
      {"the search for accelerators fails", "AcceleratorRegistry",
       [](World& world) { world.acceleratorSearchFails = true; }, leavesNoGpu},
      {"an accelerator fails a thousand reads", "AcceleratorRegistry",
       [](World& world) { world.acceleratorReadFailures = 1000; }},
      {"the ticks can't be read", "ProcessorTicks", [](World& world) { world.ticksFail = true; }},
      {"the numbers of cores can't be read", "SystemControls",
       [](World& world) { world.efficiencyCores = world.performanceCores = std::nullopt; },
       [](StartedMac& mac) { mac.efficiencyCores = mac.performanceCores = "4"; }},
      {"the chip's name has an odd letter", "SystemControls",
       [](World& world) { world.chip = "Apple M2 \xff"; },
       [](StartedMac& mac) { mac.chip = "Apple M2 \xef\xbf\xbd"; }},
      {"the profiler tells no number", "ProgramLauncher",
       [](World& world) {
         world.displaysReport = World::displaysReportWithCores("<string>ten</string>");
       },
       leavesNoGpuCores},
      {"the profiler tells a list", "ProgramLauncher",
       [](World& world) { world.displaysReport = World::displaysReportWithCores("<array/>"); },
       leavesNoGpuCores},
      {"the profiler prints half a report", "ProgramLauncher",
       [](World& world) { world.displaysReport->resize(world.displaysReport->size() / 2); },
       leavesNoGpuCores},
      {"the profiler prints nothing", "ProgramLauncher",
       [](World& world) { world.displaysReport = ""; }, leavesNoGpuCores},
      {"the profiler can't be started", "ProgramLauncher",
       [](World& world) { world.displaysReport = std::nullopt; }, leavesNoGpuCores},
      {"settings can't be written", "UserDefaults",
       [](World& world) { world.storesSettings = false; }},
      {"the period is negative", "UserDefaults", [](World& world) { world.storedPeriod = "-5"; }},
      {"the log folder is gone", "FileStore", [](World& world) { world.storedFolder = "/gone"; }},
      {"there is no desktop folder", "FileStore",
       [](World& world) { world.desktop = std::nullopt; }},
      {"the background is stuck", "BackgroundQueue",
       [](World& world) { world.backgroundIsStuck = true; }},
      {"notices are not allowed", "UserNotifications",
       [](World& world) { world.noticesAreAllowed = false; }},
      {"nobody can be asked for notices", "UserNotifications",
       [](World& world) { world.noticesError = "No notification centre"; }},
      {"the random numbers repeat", "RandomNumbers",
       [](World& world) { world.everyRandomNumber = 0; }},
      {"there is no screen", "Screens", [](World& world) { world.screens.clear(); }},
      {"the system's version is empty", "ProcessInformation",
       [](World& world) { world.systemVersion.clear(); }},
      {"it is before 1970", "Clock", [](World& world) { world.clockError = -1'772'800'000; }},
      {"the first document is no property list", "HelperConnection",
       [](World& world) { world.document = base::Bytes{'x'}; }},
      {"the first run gives no document", "HelperConnection",
       [](World& world) { world.document = std::nullopt; }},
      {"the first result comes late", "HelperConnection",
       [](World& world) { world.helperIsLate = true; }},
      {"the helper is of another version", "HelperConnection",
       [](World& world) { world.helperVersion = "0.9"; }},
      {"the helper hangs", "HelperConnection", [](World& world) { world.helperHangs = true; }},
      {"the helper says that it does not respond", "HelperConnection",
       [](World& world) { world.helperSaysItResponds = false; }},
      {"nobody serves the name", "HelperConnector",
       [](World& world) { world.nobodyServes = true; }},
      {"no connection can be made", "HelperConnector",
       [](World& world) { world.connects = false; }},
      {"there is no embedded helper", "Bundle",
       [](World& world) { world.embeddedVersion = std::nullopt; }},
  };
  return all;
}

std::string figuresAfter(const StartedMac& mac) {
  return "12.000, 8.000, 1.000, 0.100, 3.000, 1500, 3000, 444, " + mac.cpuTemperature + ", " +
         mac.gpuTemperature + ", 50.000, 25.000, 75.000, 37.000";
}

std::string titleAfter(const StartedMac& mac) {
  return mac.chip + ", " + mac.gpu + ", " + mac.efficiencyCores + ", " + mac.performanceCores +
         ", " + mac.gpuCores;
}

/// A row without its two times.
std::string figuresIn(const std::string& row) {
  const std::size_t afterClock = row.find(", ");
  return row.substr(row.find(", ", afterClock + 2) + 2);
}

/// Starts in a world of these faults, which end before the first look, and samples. What differs
/// from what is expected, or nothing.
std::string complaintAbout(const std::vector<const StartFault*>& faults) {
  FaultyWorld world = healthyWorld(FaultyMacKind::smc);
  StartedMac expected;
  for (const StartFault* fault : faults) {
    fault->set(world);
    fault->leaves(expected);
  }
  FaultyMac mac(world);
  mac.start();
  if (mac.title() != titleAfter(expected)) return "title: " + mac.title();
  if (mac.launchesTold() != 1) return "the start is not told once";
  mac.change(healthyWorld(FaultyMacKind::smc));
  // Until a helper serves: the button's press, an update's removal and installation, one sample.
  SeenSecond seen;
  for (int second = 0; second < 6; ++second) seen = mac.second();
  if (mac.ending() != "running") return "the run has ended: " + mac.ending();
  if (seen.rows.size() != 1) return std::to_string(seen.rows.size()) + " rows";
  if (figuresIn(seen.rows[0]) != figuresAfter(expected)) return "figures: " + seen.rows[0];
  if (seen.log != "saved in /home/ada/Desktop") return "log: " + seen.log;
  if (seen.served != "12.000") return "served: " + seen.served;
  return "";
}

std::string startTestName(const testing::TestParamInfo<std::size_t>& info) {
  std::string name;
  bool startsWord = true;
  for (const char c : startFaults()[info.param].name) {
    const bool isWord = std::isalnum(static_cast<unsigned char>(c)) != 0;
    if (isWord) name += startsWord ? static_cast<char>(std::toupper(c)) : c;
    startsWord = !isWord && c != '\'';
  }
  return name;
}

class FaultAtTheStart : public testing::TestWithParam<std::size_t> {};

TEST_P(FaultAtTheStart, LeavesWhatIsReadOnceAndIsOver) {
  EXPECT_EQ(complaintAbout({&startFaults()[GetParam()]}), "");
}

TEST_P(FaultAtTheStart, LeavesNoMoreBesideAnother) {
  const StartFault& one = startFaults()[GetParam()];
  for (const StartFault& another : startFaults()) {
    if (&another <= &one) continue;
    const std::string complaint = complaintAbout({&one, &another});
    EXPECT_EQ(complaint, "") << one.name << ", and " << another.name;
    if (!complaint.empty()) break;
  }
}

INSTANTIATE_TEST_SUITE_P(All, FaultAtTheStart, testing::Range<std::size_t>(0, startFaults().size()),
                         startTestName);

TEST(HealthyStart, GivesTheFirstRowAtOnceCountedSinceBoot) {
  FaultyMac mac;
  EXPECT_EQ(mac.start(),
            std::vector<std::string>{"13:02:33.123, 0.000, 12.000, 8.000, 1.000, 0.100, 3.000, "
                                     "1500, 3000, 444, 40, 48, 60, 35, 15.000, 10.000, 20.000, "
                                     "37.000"});
  EXPECT_EQ(mac.title(), "Apple M2 Pro, Apple M2 Pro, 4, 6, 16");
}

TEST(HealthyStart, SamplesOncePerSecondAndServesTheSample) {
  FaultyMac mac;
  mac.start();
  const SeenSecond seen = mac.second();
  EXPECT_EQ(seen.rows,
            std::vector<std::string>{"13:02:34.123, 1.000, 12.000, 8.000, 1.000, 0.100, 3.000, "
                                     "1500, 3000, 444, 40, 48, 60, 35, 50.000, 25.000, 75.000, "
                                     "37.000"});
  EXPECT_EQ(seen.log, "saved in /home/ada/Desktop");
  EXPECT_EQ(seen.update, "checks");
  EXPECT_EQ(seen.served, "12.000");
}

}  // namespace
}  // namespace pallimo::scenarios
