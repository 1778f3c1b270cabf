// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <cmath>
#include <limits>

#include "scenarios/fault.h"

namespace pallimo::scenarios {

namespace {

using World = FaultyWorld;
using base::PropertyList;
using base::PropertyListDictionary;
using Accelerators = std::vector<PropertyListDictionary>;

// What a figure is where nothing was measured.
const std::string kNoPower = "0.000, 0.000, 0.000, 0.000, 0.000";
const std::string kNoFrequency = "0, 0, 0";
const std::string kNoSensor = "-1, nan, -1";
const std::string kWithoutTp01 = "45, 52, 60";
const std::string kWithoutTe05 = "40, 50, 60";

FigureEffect cpuTemperature(const std::string& text) { return {.cpuTemperature = text}; }
FigureEffect gpuTemperature(const std::string& text) { return {.gpuTemperature = text}; }
const FigureEffect kNoTemperature = {.cpuTemperature = kNoSensor, .gpuTemperature = "nan"};
const FigureEffect kNoGpu = {.gpuUtilization = "0.000"};

std::vector<Fault> smcFaults() {
  const auto tp01Reads = [](float value) {
    return [value](World& world) { world.smcValues["Tp01"] = value; };
  };
  const auto unreadable = [](const char* key) {
    return [key](World& world) { world.smcUnreadable.insert(key); };
  };
  return {
      // This chip's low readings stand for no sensor; Te05, at 45, stands in.
      {"Tp01 reads 15", "SmcDevice", tp01Reads(15), cpuTemperature("45, 50, 60")},
      {"Tp01 reads -40", "SmcDevice", tp01Reads(-40), cpuTemperature(kWithoutTp01)},
      {"Tp01 reads not a number", "SmcDevice", tp01Reads(std::nanf("")),
       cpuTemperature(kWithoutTp01)},
      {"Tp01 reads infinity", "SmcDevice", tp01Reads(std::numeric_limits<float>::infinity()),
       cpuTemperature("45, inf, inf")},
      // Between 5 and 10 the value before is repeated.
      {fault_name::kGlitch, "SmcDevice", [](World& world) { world.smcValues["Tg05"] = 7; },
       gpuTemperature("7")},
      {"Tg05 reads 0", "SmcDevice", [](World& world) { world.smcValues["Tg05"] = 0; },
       gpuTemperature("nan")},
      {"Te05 can't be read", "SmcDevice", unreadable("Te05"), cpuTemperature(kWithoutTe05)},
      {"Tp01 can't be read", "SmcDevice", unreadable("Tp01"), cpuTemperature(kWithoutTp01)},
      {"Tg05 can't be read", "SmcDevice", unreadable("Tg05"), gpuTemperature("nan")},
      {"no key can be read", "SmcDevice", [](World& world) { world.smcReads = false; },
       kNoTemperature},
      {"the SMC does not open", "SmcDevice", [](World& world) { world.smcOpens = false; },
       kNoTemperature},
      // Keys are looked for once, at the start.
      {"the number of keys can't be read", "SmcDevice",
       [](World& world) { world.smcTellsKeyCount = false; }},
      {"the number of keys is huge", "SmcDevice",
       [](World& world) { world.smcKeyCount = 0xFFFFFFFF; }},
      {"no key tells its type", "SmcDevice", [](World& world) { world.smcTellsKeyInfo = false; }},
      {"a key appears", "SmcDevice", [](World& world) { world.smcValues["Tp0D"] = 99; }},
      {"the record's own result is an error", "SmcDevice",
       [](World& world) { world.smcRecordResult = 0x84; }},
  };
}

std::vector<Fault> hidFaults() {
  const auto withoutTemperatures = [](World& world) { world.hidServices.clear(); };
  return {
      {"Tp0i has no event", "HidClient",
       [](World& world) { world.hidServices[0].value = std::nullopt; },
       cpuTemperature("-1, 35, 60")},
      {"Tp0i reads infinity", "HidClient",
       [](World& world) { world.hidServices[0].value = std::numeric_limits<double>::infinity(); },
       cpuTemperature("45, inf, inf")},
      {"Tp0i has no location", "HidClient",
       [](World& world) { world.hidServices[0].locationID = std::nullopt; },
       cpuTemperature(kWithoutTp01)},
      {"a second Tp0i reads 70", "HidClient",
       [](World& world) { world.hidServices.push_back(World::sensor("Tp0i", 70)); },
       cpuTemperature("45, 58, 70")},
      {"a sensor of another name appears", "HidClient",
       [](World& world) { world.hidServices.push_back(World::sensor("Tp9i", 99)); }},
      {"the list of sensors is empty", "HidClient", withoutTemperatures, kNoTemperature},
      {"there is no list of sensors", "HidClient", [](World& world) { world.hidHasList = false; },
       kNoTemperature},
  };
}

std::vector<Fault> acceleratorFaults() {
  const auto accelerators = [](Accelerators list) {
    return [list](World& world) { world.accelerators = list; };
  };
  using Gpu = fakes::FakeAcceleratorRegistry;
  PropertyListDictionary foreign = Gpu::appleGPU("Other", 90);
  foreign[0].second = PropertyList(base::Bytes{0x86, 0x80, 0, 0});
  PropertyListDictionary silent = Gpu::appleGPU("Apple M2 Pro", 0);
  silent.pop_back();
  PropertyListDictionary text = silent;
  text.emplace_back(
      "PerformanceStatistics",
      PropertyList(PropertyListDictionary{{"Device Utilization %", PropertyList("37")}}));
  return {
      {"an accelerator fails three reads", "AcceleratorRegistry",
       [](World& world) { world.acceleratorReadFailures = 3; }},
      {"the GPU's utilisation is a text", "AcceleratorRegistry", accelerators({text}), kNoGpu},
      {"the GPU has no statistics", "AcceleratorRegistry", accelerators({silent}), kNoGpu},
      {"the GPU has no properties", "AcceleratorRegistry", accelerators({{}}), kNoGpu},
      {"the only GPU is another vendor's", "AcceleratorRegistry", accelerators({foreign}), kNoGpu},
      {"there is no accelerator", "AcceleratorRegistry", accelerators({}), kNoGpu},
      {"the search gives no iterator", "AcceleratorRegistry",
       [](World& world) {
         world.accelerators.clear();
         world.acceleratorEmptySearch = Gpu::EmptySearch::zero;
       },
       kNoGpu},
      {"the search fails", "AcceleratorRegistry",
       [](World& world) { world.acceleratorSearchFails = true; }, kNoGpu},
  };
}

std::vector<Fault> kernelFaults() {
  return {
      // What these do to the figures depends on the sample before: see the expectation.
      {"a third processor appears", "ProcessorTicks", [](World& world) { world.processors = 3; }},
      {"a processor goes", "ProcessorTicks", [](World& world) { world.processors = 1; }},
      {"no processor is listed", "ProcessorTicks", [](World& world) { world.processors = 0; }},
      {"the ticks stand still", "ProcessorTicks",
       [](World& world) { world.ticksStandStill = true; }},
      {"the ticks can't be read", "ProcessorTicks", [](World& world) { world.ticksFail = true; }},
      {"the chip calls itself M1", "SystemControls", [](World& world) { world.chip = "Apple M1"; }},
      {"model, processor and cores can't be read", "SystemControls",
       [](World& world) {
         world.model = std::nullopt;
         world.cpuType = std::nullopt;
         world.efficiencyCores = world.performanceCores = std::nullopt;
       }},
      {"an hour back", "Clock", [](World& world) { world.clockError = -3600; }},
      {"a day ahead", "Clock", [](World& world) { world.clockError = 86'400; }},
      {"before 1970", "Clock", [](World& world) { world.clockError = -1'772'800'000; }},
      {"a busy main thread", "MainQueue", [](World& world) { world.mainThreadIsBusy = true; }},
  };
}

std::vector<Fault> settingsFaults() {
  const auto period = [](const char* text) {
    return [text](World& world) { world.storedPeriod = text; };
  };
  return {
      {"the period is no number", "UserDefaults", period("fast")},
      {"the period is negative",
       "UserDefaults",
       period("-5"),
       {.power = "12.000, 40.000, 5.000, 0.500, 15.000"}},
      {"the period is infinite",
       "UserDefaults",
       period("inf"),
       {.power = "12.000, 0.000, 0.000, 0.000, 0.000"}},
      {"the other settings are of other kinds", "UserDefaults",
       [](World& world) {
         world.storedGpuFrequency = "perhaps";
         world.storedUnit = "Kelvin";
       }},
      {"settings can't be written", "UserDefaults",
       [](World& world) { world.storesSettings = false; }},
      {"there is no desktop folder",
       "FileStore",
       [](World& world) { world.desktop = std::nullopt; },
       {},
       {.log = "error there is no desktop folder"}},
      {"the log folder is no absolute path",
       "UserDefaults",
       [](World& world) { world.storedFolder = "logs"; },
       {},
       {.log = "saved in /logs"}},
      {"the log folder is gone",
       "FileStore",
       [](World& world) {
         world.storedFolder = "/gone";
         world.fileFailure = "No such file or directory";
       },
       {},
       {.log = "error No such file or directory"}},
      {"the disk is full",
       "FileStore",
       [](World& world) { world.fileFailure = "No space left on device"; },
       {},
       {.log = "error No space left on device"}},
      {"the background is stuck",
       "BackgroundQueue",
       [](World& world) { world.backgroundIsStuck = true; },
       {},
       {.log = "nothing yet"}},
      {"the updater does not start",
       "SoftwareUpdater",
       [](World& world) { world.updaterError = "The feed is missing"; },
       {},
       {.update = "error The feed is missing"}},
      {"the random numbers repeat", "RandomNumbers",
       [](World& world) { world.everyRandomNumber = 4; }},
      {"there is no screen", "Screens", [](World& world) { world.screens.clear(); }},
      {"the system's version is empty", "ProcessInformation",
       [](World& world) { world.systemVersion.clear(); }},
      {"the profiler prints nothing", "ProgramLauncher",
       [](World& world) { world.displaysReport = ""; }},
  };
}

void replaceInDocument(World& world, const std::string& before, const std::string& after) {
  std::string text(world.document->begin(), world.document->end());
  const std::size_t at = text.find(before);
  if (at == std::string::npos) return;
  text.replace(at, before.size(), after);
  world.document = base::Bytes(text.begin(), text.end());
}

std::vector<Fault> documentFaults() {
  const std::string healthy = xmlOf(SampleDocument{});
  const auto document = [](const std::string& text) {
    return [text](World& world) { world.document = base::Bytes(text.begin(), text.end()); };
  };
  // These change the document of the fault before them.
  const auto renamed = [](const std::string& key, const std::string& other) {
    return [key, other](World& world) {
      replaceInDocument(world, "<key>" + key + "</key>", "<key>" + other + "</key>");
    };
  };
  const auto withCpuEnergy = [](const std::string& value) {
    return [value](World& world) {
      for (const char* before : {"<integer>4000</integer>", "<string>4000</string>"}) {
        replaceInDocument(world, before, value);
      }
    };
  };
  const auto plist = [&](const std::string& value) {
    return document(R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + value +
                    "</plist>");
  };
  const auto repeated = [](const std::string& text, int times) {
    std::string all;
    for (int time = 0; time < times; ++time) all += text;
    return all;
  };
  const FigureEffect nothing = {.power = kNoPower, .frequency = kNoFrequency};
  return {
      {"the document's CPU energy is a text",
       "HelperConnection",
       withCpuEnergy("<string>4000</string>"),
       {.power = "12.000, 0.000, 1.000, 0.100, 3.000"}},
      {"the document's CPU energy is not a number",
       "HelperConnection",
       withCpuEnergy("<real>nan</real>"),
       {.power = "12.000, nan, 1.000, 0.100, 3.000"}},
      {"the document has no GPU",
       "HelperConnection",
       renamed("gpu", "fan"),
       {.frequency = "1500, 3000, 0"}},
      {"the document has no clusters",
       "HelperConnection",
       renamed("clusters", "groups"),
       {.frequency = "0, 0, 444"}},
      {"the document's processor is a text",
       "HelperConnection",
       plist("<dict><key>processor</key><string>M2</string><key>gpu</key><dict><key>freq_hz</key>"
             "<real>444</real></dict></dict>"),
       {.power = kNoPower, .frequency = "0, 0, 444"}},
      {"the document is an array", "HelperConnection", plist("<array/>"), nothing},
      {"the document is too deep", "HelperConnection",
       plist(repeated("<array>", 1200) + repeated("</array>", 1200)), nothing},
      {"the document is cut off", "HelperConnection",
       document(healthy.substr(0, healthy.size() / 2)), nothing},
      {"the document is half a binary one", "HelperConnection", document("bplist00\xd1\x01"),
       nothing},
      {"the document is no property list", "HelperConnection",
       document("powermetrics must be invoked as the superuser\n"), nothing},
      {"the document is empty", "HelperConnection", document(""), nothing},
      {"a run gives no document", "HelperConnection",
       [](World& world) { world.document = std::nullopt; }},
  };
}

std::vector<Fault> linkFaults() {
  return {
      {"results come a second late", "HelperConnection",
       [](World& world) { world.helperIsLate = true; }},
      {"results come twice", "HelperConnection", [](World& world) { world.helperRepeats = true; }},
      {"the helper hangs", "HelperConnection", [](World& world) { world.helperHangs = true; }},
      {fault_name::kHelperDies,
       "HelperConnection",
       [](World& world) { world.helperHangs = true; },
       {},
       {},
       [](FaultyMac& mac) { mac.helperDies(); }},
      {fault_name::kInvalidated,
       "HelperConnection",
       [](World&) {},
       {},
       {},
       [](FaultyMac& mac) { mac.connectionIsInvalidated(); }},
      {"no connection can be made", "HelperConnector",
       [](World& world) { world.connects = false; }},
      {"connections have no proxy", "HelperConnection",
       [](World& world) { world.hasProxies = false; }},
      {"nobody serves the name", "HelperConnector",
       [](World& world) { world.nobodyServes = true; }},
      {"the helper says that it does not respond", "HelperConnection",
       [](World& world) { world.helperSaysItResponds = false; }},
      {"the helper tells another version", "HelperConnection",
       [](World& world) { world.helperVersion = "0.9"; }},
      {"the embedded helper is gone", "Bundle",
       [](World& world) { world.embeddedVersion = std::nullopt; }},
      {"installations are refused", "HelperInstaller",
       [](World& world) { world.installs = false; }},
      {"authorisations are refused", "AuthorizationServices",
       [](World& world) { world.authorizes = false; }},
      {"nobody reads the output",
       "StandardOutput",
       [](World& world) { world.output = ports::StandardOutput::State::closed; },
       {},
       {.endAtRow = "0"}},
      {"the output's disk is full",
       "StandardOutput",
       [](World& world) { world.output = ports::StandardOutput::State::failed; },
       {},
       {.endAtRow = "1: can't write to standard output: No space left on device"}},
  };
}

}  // namespace

const std::vector<Fault>& runningFaults() {
  static const std::vector<Fault> all = [] {
    std::vector<Fault> faults;
    for (const auto& some : {smcFaults(), hidFaults(), acceleratorFaults(), kernelFaults(),
                             settingsFaults(), documentFaults(), linkFaults()}) {
      faults.insert(faults.end(), some.begin(), some.end());
    }
    return faults;
  }();
  return all;
}

const std::vector<Interaction>& interactions() {
  static const std::vector<Interaction> all = {
      // The stand-in can't be read either: 0.
      {"Te05 can't be read", "Tp01 reads 15", cpuTemperature("0, 30, 60")},
      {"Te05 can't be read", "Tp01 reads -40", cpuTemperature("60, 60, 60")},
      {"Te05 can't be read", "Tp01 reads not a number", cpuTemperature("60, 60, 60")},
      {"Te05 can't be read", "Tp01 reads infinity", cpuTemperature("60, inf, inf")},
      {"Te05 can't be read", "Tp01 can't be read", cpuTemperature("60, 60, 60")},
      // An M1's low readings stay.
      {"the chip calls itself M1", "Tp01 reads 15", cpuTemperature("15, 40, 60")},
      {"the document's CPU energy is a text",
       "the period is negative",
       {.power = "12.000, 0.000, 5.000, 0.500, 15.000"}},
      {"the document's CPU energy is not a number",
       "the period is negative",
       {.power = "12.000, nan, 5.000, 0.500, 15.000"}},
      {"the document's CPU energy is a text",
       "the period is infinite",
       {.power = "12.000, 0.000, 0.000, 0.000, 0.000"}},
      {"the document's CPU energy is not a number",
       "the period is infinite",
       {.power = "12.000, nan, 0.000, 0.000, 0.000"}},
      {"the document has no GPU", "the document has no clusters", {.frequency = "0, 0, 0"}},
      // Nothing is written where there is no folder.
      {"there is no desktop folder",
       "the disk is full",
       {},
       {.log = "error there is no desktop folder"}},
  };
  return all;
}

}  // namespace pallimo::scenarios
