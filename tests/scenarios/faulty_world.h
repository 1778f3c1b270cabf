// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/bytes.h"
#include "base/property_list.h"
#include "fakes/fake_accelerator_registry.h"
#include "fakes/fake_hid_sensors.h"
#include "ports/authorization_services.h"
#include "ports/screens.h"
#include "ports/standard_output.h"
#include "scenarios/sample_document.h"

namespace pallimo::scenarios {

/// What the outside world answers, as plain values: a healthy Mac until a fault changes some. Two
/// faults at once change one world one after the other, so that of two that name the same value the
/// later one counts.
struct FaultyWorld {
  // The SMC: three temperatures of the CPU and one of the GPU.
  bool smcOpens = true;
  bool smcReads = true;
  bool smcTellsKeyInfo = true;
  bool smcTellsKeyCount = true;
  std::optional<std::uint32_t> smcKeyCount;
  std::uint8_t smcRecordResult = 0;
  std::map<std::string, float> smcValues = {
      {"Tp01", 40.0F}, {"Te05", 45.0F}, {"Tp05", 60.0F}, {"Tg05", 35.0F}};
  std::map<std::string, std::string> smcTypes;  ///< of keys that are no "flt "
  std::set<std::string> smcUnreadable;
  std::set<std::string> smcUnlisted;  ///< keys whose index fails
  std::set<std::string> smcUntold;    ///< keys whose information fails

  // The HID sensors, the same four temperatures.
  bool hidMakesClients = true;
  bool hidHasList = true;
  std::vector<fakes::FakeHidService> hidServices = {sensor("Tp0i", 40), sensor("Te0i", 45),
                                                    sensor("Tp1i", 60), sensor("Tg0i", 35)};

  // The accelerators.
  bool acceleratorSearchFails = false;
  fakes::FakeAcceleratorRegistry::EmptySearch acceleratorEmptySearch =
      fakes::FakeAcceleratorRegistry::EmptySearch::iterator;
  std::vector<base::PropertyListDictionary> accelerators = {
      fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 37)};
  int acceleratorReadFailures = 0;

  // The processors' ticks.
  bool ticksFail = false;
  bool ticksStandStill = false;
  std::size_t processors = 2;

  // The kernel's variables; nothing: it can't be read.
  std::optional<std::int32_t> cpuType = 0x0100000C;
  std::optional<std::string> model = "Mac14,9";
  std::optional<std::string> chip = "Apple M2 Pro";
  std::optional<std::int32_t> efficiencyCores = 4;
  std::optional<std::int32_t> performanceCores = 6;
  /// What the system profiler prints; nothing: it can't be started.
  std::optional<std::string> displaysReport = displaysReportWithCores("<string>16</string>");

  // The helper and the way to it.
  bool helperHangs = false;
  bool helperIsLate = false;
  bool helperRepeats = false;
  bool helperSaysItResponds = true;
  std::string helperVersion = "1.0";
  std::optional<base::Bytes> document = bytesOf(SampleDocument{});
  bool connects = true;
  bool hasProxies = true;
  bool nobodyServes = false;
  std::optional<std::string> embeddedVersion = "1.0";
  bool installs = true;
  bool authorizes = true;

  // What the user has.
  std::optional<std::string> storedPeriod;  ///< "samplingResolution", as somebody wrote it by hand
  std::optional<std::string> storedGpuFrequency;
  std::optional<std::string> storedUnit;
  std::optional<std::string> storedFolder;
  bool storesSettings = true;
  std::optional<std::string> desktop = "/home/ada/Desktop";
  std::optional<std::string> fileFailure;
  bool backgroundIsStuck = false;
  std::optional<std::string> updaterError;
  std::optional<std::string> noticesError;
  bool noticesAreAllowed = true;
  std::vector<ports::Screen> screens = {{.width = 1512, .height = 982, .backingScaleFactor = 2}};
  std::string systemVersion = "Version 14.5 (Build 23F79)";
  std::optional<std::uint64_t> everyRandomNumber;

  /// By how much the wall clock is wrong, s.
  int clockError = 0;
  bool mainThreadIsBusy = false;
  ports::StandardOutput::State output = ports::StandardOutput::State::open;

  static fakes::FakeHidService sensor(const char* name, std::optional<double> value);
  static std::string displaysReportWithCores(const std::string& cores);
};

inline fakes::FakeHidService FaultyWorld::sensor(const char* name, std::optional<double> value) {
  fakes::FakeHidService service;
  service.locationID = base::encodeFourCharCode(name);
  service.value = value;
  return service;
}

inline std::string FaultyWorld::displaysReportWithCores(const std::string& cores) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array><dict>)"
         "<key>_items</key><array><dict><key>sppci_cores</key>" +
         cores + "</dict></array></dict></array></plist>";
}

}  // namespace pallimo::scenarios
