// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The recordings of tests/recordings, each with the rows and the title that it must give.
// tests/recordings/README.md says how they come about.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "adapters/simulated/recording_reader.h"
#include "scenarios/recorded_mac.h"
#include "unit/adapters/simulated/recording_folder.h"

namespace pallimo::scenarios {
namespace {

namespace fs = std::filesystem;
using adapters::simulated::RecordingFolder;
using Lines = std::vector<std::string>;

const std::string kRecordings = PALLIMO_SOURCE_DIR "/tests/recordings";

std::string folderOf(const std::string& recording) { return kRecordings + "/" + recording; }

Lines recordings() {
  Lines names;
  for (const auto& entry : fs::directory_iterator(kRecordings)) {
    if (entry.is_directory()) names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Lines linesOf(const std::string& file) {
  Lines lines;
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::size_t stepsOf(const std::string& recording) {
  const auto read = adapters::simulated::readRecording(folderOf(recording));
  return std::get<adapters::simulated::Recording>(read).steps.size();
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

class Recorded : public testing::TestWithParam<std::string> {};

TEST_P(Recorded, GivesARowARequest) {
  const Lines expected = linesOf(folderOf(GetParam()) + "/expected.csv");
  ASSERT_GE(expected.size(), stepsOf(GetParam())) << "a line a step, at least";
  RecordedMac mac(folderOf(GetParam()));
  for (std::size_t line = 0; line < expected.size(); ++line) {
    EXPECT_EQ(mac.nextRow(), expected[line]) << "request " << line + 1;
  }
}

TEST_P(Recorded, NamesItsMachine) {
  const Lines expected = linesOf(folderOf(GetParam()) + "/expected_title.txt");
  ASSERT_EQ(expected.size(), 1u);
  EXPECT_EQ(RecordedMac(folderOf(GetParam())).title(), expected.front());
}

INSTANTIATE_TEST_SUITE_P(All, Recorded, testing::ValuesIn(recordings()), testName);

TEST(Recordings, AnotherPeriodDividesTheEnergiesAndNotThePackagesPower) {
  RecordedMac mac(folderOf("m4-pro-at-work"), 1000);
  EXPECT_EQ(mac.nextRow().substr(0, 34), "0.480, 0.200, 0.000, 0.000, 0.030,");
  EXPECT_EQ(mac.nextRow().substr(0, 36), "23.500, 10.000, 0.000, 0.250, 1.500,");
}

TEST(Recordings, ANewConnectionBeginsAtTheFirstStepAgain) {
  RecordedMac mac(folderOf("hid-events"));
  const std::string first = mac.nextRow();
  mac.nextRow();
  mac.replaceHelper();
  EXPECT_EQ(mac.nextRow(), first);
}

TEST(Recordings, TheTextOnTheTemperaturesNamesTheirSource) {
  EXPECT_EQ(RecordedMac(folderOf("hid-services")).general().modelTemperature()->tooltipTest(),
            "Temperature in Degrees Celcius. Data from IOHIDService");
  EXPECT_EQ(RecordedMac(folderOf("smc-unavailable")).general().modelTemperature()->tooltipTest(),
            "Temperature in Degrees Celcius. Data from SMC");
}

/// A recording of one step that is about what start-up reads.
struct Identity {
  std::string controls = R"("hw.model": "Mac14,2", "machdep.cpu.brand_string": "Apple M2")";
  std::string accelerators = "null";
  std::string report;  ///< on the displays; empty: the profiler can't be started
};

std::string titleOf(const Identity& identity) {
  const RecordingFolder folder;
  folder.write("displays.plist", identity.report);
  folder.write("machine.json",
               R"({"format": 1, "name": "x", "sysctl": {"hw.cputype": 16777228, )" +
                   identity.controls + R"(}, "steps": [{"accelerators": )" + identity.accelerators +
                   "}]" +
                   (identity.report.empty()
                        ? ""
                        : R"(, "system_profiler": {"SPDisplaysDataType": "displays.plist"})") +
                   "}");
  return RecordedMac(folder.path()).title();
}

std::string plist(const std::string& value) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + value + "</plist>";
}

std::string titleWithReport(const std::string& report) {
  Identity identity;
  identity.report = report;
  return titleOf(identity);
}

/// The report's first item is this dictionary.
std::string titleWithItem(const std::string& item) {
  return titleWithReport(plist("<array><dict><key>_items</key><array>" + item +
                               "<dict><key>sppci_cores</key><string>99</string></dict></array>"
                               "</dict></array>"));
}

std::string titleWithCores(const std::string& value) {
  return titleWithItem("<dict><key>sppci_cores</key>" + value + "</dict>");
}

std::string titleWithControls(const std::string& controls) {
  Identity identity;
  identity.controls += ", " + controls;
  return titleOf(identity);
}

std::string titleWithAccelerators(const std::string& accelerators) {
  Identity identity;
  identity.accelerators = accelerators;
  return titleOf(identity);
}

std::string gpuCores(const std::string& number) { return "Apple M2, Unknown, 4, 4, " + number; }
std::string gpuName(const std::string& name) { return "Apple M2, " + name + ", 4, 4, -1"; }

const std::string kNoCores = gpuCores("-1");

TEST(RecordedIdentity, WithoutTheProfilerTheGpuCoresAreUnknown) {
  EXPECT_EQ(titleOf(Identity{}), kNoCores);
}

TEST(RecordedIdentity, TheReportsFirstItemTellsTheGpuCores) {
  EXPECT_EQ(titleWithCores("<string>10</string>"), gpuCores("10"));
  EXPECT_EQ(titleWithCores("<string>+8</string>"), gpuCores("8"));
  EXPECT_EQ(titleWithCores("<string>-3</string>"), gpuCores("-3"));
  EXPECT_EQ(titleWithCores("<string>007</string>"), gpuCores("7"));
}

TEST(RecordedIdentity, GpuCoresThatAreNoNumberAreUnknown) {
  for (const char* text : {"ten", "", "+", "-", "+-3", "--3", "++3", "1.5", "10 ", " 10", "0x10",
                           "10 cores", "99999999999999999999"}) {
    EXPECT_EQ(titleWithCores("<string>" + std::string(text) + "</string>"), kNoCores) << text;
  }
}

TEST(RecordedIdentity, GpuCoresThatAreNoTextAreUnknown) {
  EXPECT_EQ(titleWithCores("<integer>10</integer>"), kNoCores);
  EXPECT_EQ(titleWithItem("<dict><key>_name</key><string>Apple M2</string></dict>"), kNoCores);
}

TEST(RecordedIdentity, AReportOfAnotherShapeTellsNothing) {
  EXPECT_EQ(titleWithReport("system_profiler: unknown data type\n"), kNoCores);
  EXPECT_EQ(titleWithReport(plist("<dict><key>sppci_cores</key><string>9</string></dict>")),
            kNoCores);
  EXPECT_EQ(titleWithReport(plist("<array/>")), kNoCores);
  EXPECT_EQ(titleWithReport(plist("<array><string>9</string></array>")), kNoCores);
  EXPECT_EQ(titleWithReport(plist("<array><dict/></array>")), kNoCores);
  EXPECT_EQ(titleWithReport(plist("<array><dict><key>_items</key><dict><key>sppci_cores</key>"
                                  "<string>9</string></dict></dict></array>")),
            kNoCores);
  EXPECT_EQ(titleWithReport(plist("<array><dict><key>_items</key><array/></dict></array>")),
            kNoCores);
  EXPECT_EQ(titleWithItem("<string>9</string>"), kNoCores);
}

TEST(RecordedIdentity, PerformanceLevelOneIsTheEfficiencyCores) {
  EXPECT_EQ(titleWithControls(R"("hw.perflevel1.logicalcpu": 2, "hw.perflevel0.logicalcpu": 8)"),
            "Apple M2, Unknown, 2, 8, -1");
}

TEST(RecordedIdentity, ALevelThatCannotBeReadCountsFourCores) {
  EXPECT_EQ(titleWithControls(R"("hw.perflevel1.logicalcpu": 2)"), "Apple M2, Unknown, 2, 4, -1");
  EXPECT_EQ(titleWithControls(R"("hw.perflevel0.logicalcpu": 8)"), "Apple M2, Unknown, 4, 8, -1");
}

TEST(RecordedIdentity, TheGpuIsNamedByTheFirstOfApplesThatHasStatistics) {
  EXPECT_EQ(titleWithAccelerators(
                R"([{"vendor-id": "86800000", "model": "Other", "PerformanceStatistics": {}},
                    {"vendor-id": "6B100000", "model": "Silent"},
                    {"vendor-id": "6B100000", "model": "Chosen", "PerformanceStatistics": {}},
                    {"vendor-id": "6B100000", "model": "Late", "PerformanceStatistics": {}}])"),
            gpuName("Chosen"));
}

TEST(RecordedIdentity, AGpuWithoutATextForItsModelIsUnknown) {
  EXPECT_EQ(titleWithAccelerators(R"([{"vendor-id": "6B100000", "PerformanceStatistics": {}}])"),
            gpuName("Unknown"));
  EXPECT_EQ(titleWithAccelerators(
                R"([{"vendor-id": "6B100000", "model": 2, "PerformanceStatistics": {}},
                    {"vendor-id": "6B100000", "model": "Late", "PerformanceStatistics": {}}])"),
            gpuName("Unknown"));
}

TEST(RecordedIdentity, WithoutAnAcceleratorTheGpuIsUnknown) {
  EXPECT_EQ(titleWithAccelerators("null"), gpuName("Unknown"));
  EXPECT_EQ(titleWithAccelerators("[]"), gpuName("Unknown"));
  EXPECT_EQ(titleWithAccelerators(R"([{"vendor-id": "6B100000", "model": "Silent"}])"),
            gpuName("Unknown"));
}

TEST(RecordedIdentity, AnAcceleratorIsReadUntilItAnswers) {
  EXPECT_EQ(titleWithAccelerators(R"([{"vendor-id": "6B100000", "model": "Busy",
                                       "PerformanceStatistics": {}, "readFailures": 5}])"),
            gpuName("Busy"));
}

TEST(RecordedIdentityDeathTest, AMachineThatDoesNotTellItsModelStopsTheProgram) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Identity identity;
  identity.controls = R"("machdep.cpu.brand_string": "Apple M2")";
  EXPECT_DEATH(titleOf(identity), "hw\\.model");
}

TEST(RecordedIdentityDeathTest, AMachineThatDoesNotTellItsChipStopsTheProgram) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Identity identity;
  identity.controls = R"("hw.model": "Mac14,2")";
  EXPECT_DEATH(titleOf(identity), "machdep\\.cpu\\.brand_string");
}

}  // namespace
}  // namespace pallimo::scenarios
