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

#include "adapters/simulated/recordings/recording_reader.h"
#include "scenarios/recorded_mac.h"
#include "unit/adapters/simulated/recordings/recording_folder.h"

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

/// Why the recording is refused; nothing when it is not.
std::string whyRefused(const std::string& recording) {
  const auto read = adapters::simulated::readRecording(folderOf(recording));
  const auto* error = std::get_if<adapters::simulated::RecordingError>(&read);
  return error == nullptr ? "" : error->message;
}

std::size_t stepsOf(const std::string& recording) {
  const auto read = adapters::simulated::readRecording(folderOf(recording));
  const auto* steps = std::get_if<adapters::simulated::Recording>(&read);
  return steps == nullptr ? 0 : steps->steps.size();
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
  ASSERT_EQ(whyRefused(GetParam()), "");
  const Lines expected = linesOf(folderOf(GetParam()) + "/expected.csv");
  ASSERT_GE(expected.size(), stepsOf(GetParam())) << "a line a step, at least";
  RecordedMac mac(folderOf(GetParam()));
  for (std::size_t line = 0; line < expected.size(); ++line) {
    EXPECT_EQ(mac.nextRow(), expected[line]) << "request " << line + 1;
  }
}

TEST_P(Recorded, DrawsThePowerGraphsAxis) {
  ASSERT_EQ(whyRefused(GetParam()), "");
  const Lines expected = linesOf(folderOf(GetParam()) + "/expected_axis.csv");
  RecordedMac mac(folderOf(GetParam()));
  EXPECT_EQ(mac.axis(), "30 25 20 15 10 5 0, 0") << "before the first row";
  if (!expected.empty()) {
    EXPECT_EQ(expected.size(), linesOf(folderOf(GetParam()) + "/expected.csv").size());
  }
  for (std::size_t line = 0; line < expected.size(); ++line) {
    mac.nextRow();
    EXPECT_EQ(mac.axis(), expected[line]) << "request " << line + 1;
  }
}

TEST_P(Recorded, NamesItsMachine) {
  ASSERT_EQ(whyRefused(GetParam()), "");
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

TEST(Recordings, DocumentsAndSensorsOfANewConnectionBeginAtTheFirstStepAgain) {
  RecordedMac mac(folderOf("m4-pro-at-work"));
  EXPECT_EQ(mac.nextRow(),
            "0.480, 0.400, 0.000, 0.000, 0.060, 1020, 1280, 338, 31, 38, 45, 39, "
            "3.333, 7.500, 1.250, 3.000");
  EXPECT_EQ(mac.nextRow(),
            "23.500, 20.000, 0.000, 0.500, 3.000, 2592, 4512, 1578, 45, 65, 83, 69, "
            "65.000, 50.000, 72.500, 88.000");
  mac.replaceHelper();
  // The counters run back the way that they came: the same shares of it.
  EXPECT_EQ(mac.nextRow(),
            "0.480, 0.400, 0.000, 0.000, 0.060, 1020, 1280, 338, 31, 38, 45, 39, "
            "65.000, 50.000, 72.500, 3.000");
}

/// A row without its five powers.
std::string withoutPowers(const std::string& row) {
  std::size_t begin = 0;
  for (int column = 0; column < 5; ++column) begin = row.find(", ", begin) + 2;
  return row.substr(begin);
}

/// The rows of a recording without their powers when another sampling period is chosen after the
/// first `rows`; the expected ones when `rows` is none.
Lines rowsClearedAfter(std::size_t rows, const std::string& recording) {
  const Lines expected = linesOf(folderOf(recording) + "/expected.csv");
  RecordedMac mac(folderOf(recording));
  Lines seen;
  for (std::size_t row = 0; row < expected.size(); ++row) {
    if (row == rows) mac.setSamplingResolution(1000);
    seen.push_back(withoutPowers(mac.nextRow()));
  }
  return seen;
}

Lines expectedRows(const std::string& recording) {
  Lines rows = linesOf(folderOf(recording) + "/expected.csv");
  std::transform(rows.begin(), rows.end(), rows.begin(), withoutPowers);
  return rows;
}

TEST(ClearedRecordings, TicksAreStillThoseSinceTheSampleBefore) {
  EXPECT_EQ(rowsClearedAfter(1, "ticks"), expectedRows("ticks"));
}

TEST(ClearedRecordings, AFailedCallBeforeIsRememberedToo) {
  EXPECT_EQ(rowsClearedAfter(4, "ticks"), expectedRows("ticks"));
}

TEST(ClearedRecordings, ClustersKeepTheirProcessors) {
  EXPECT_EQ(rowsClearedAfter(4, "membership-comes-late"), expectedRows("membership-comes-late"));
}

TEST(ClearedRecordings, TheFilterOfGpuTemperaturesHasNoValueBefore) {
  Lines expected = expectedRows("gpu-glitches");
  ASSERT_EQ(expected.size(), 14u);
  expected[1] = "1000, 2000, 400, 30, 30, 30, 7, nan, nan, nan, 0.000";
  expected[2] = expected[1];  // the 7 stands in for the next one
  EXPECT_EQ(rowsClearedAfter(1, "gpu-glitches"), expected);
}

TEST(ClearedRecordings, AnotherPeriodDividesTheEnergiesFromThenOn) {
  RecordedMac mac(folderOf("ticks"));
  EXPECT_EQ(mac.nextRow().substr(0, 34), "3.000, 1.000, 0.000, 0.250, 0.500,");
  mac.setSamplingResolution(1000);
  EXPECT_EQ(mac.nextRow().substr(0, 34), "3.000, 0.500, 0.000, 0.125, 0.250,");
}

TEST(ClearedRecordings, TheAxisStaysUntilTheNextSampleAndIsThenThatOfItAlone) {
  RecordedMac mac(folderOf("power-axis"));
  for (int row = 0; row < 9; ++row) mac.nextRow();
  EXPECT_EQ(mac.axis(), "120 100 80 60 40 20 0, 120");
  mac.setSamplingResolution(1000);
  EXPECT_EQ(mac.axis(), "120 100 80 60 40 20 0, 120");
  EXPECT_EQ(mac.nextRow().substr(0, 7), "20.000,");
  EXPECT_EQ(mac.axis(), "20 15 10 5 0, 20");
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

TEST(RecordedIdentity, IsThatOfTheFirstStepWhateverTheOthersSay) {
  const RecordingFolder folder;
  folder.write("empty.plist", plist("<dict/>"));
  folder.write("machine.json", R"({"format": 1, "name": "x",
      "sysctl": {"hw.cputype": 16777228, "hw.model": "Mac14,2",
                 "machdep.cpu.brand_string": "Apple M2"},
      "smc": {"keys": [{"key": "Te05", "type": "flt ", "bytes": "0000F041"}]},
      "steps": [{"powermetrics": "empty.plist", "accelerators": [
                   {"vendor-id": "6B100000", "model": "First", "PerformanceStatistics": {}}]},
                {"powermetrics": "empty.plist", "smc": {"Te05": "00004842"}, "accelerators": [
                   {"vendor-id": "6B100000", "model": "Second",
                    "PerformanceStatistics": {"Device Utilization %": 40}}]}]})");
  RecordedMac mac(folder.path());
  EXPECT_EQ(mac.title(), gpuName("First"));
  const std::string before = "0.000, 0.000, 0.000, 0.000, 0.000, 0, 0, 0, ";
  EXPECT_EQ(mac.nextRow(), before + "30, 30, 30, nan, nan, 0.000, 0.000, 0.000");
  EXPECT_EQ(mac.nextRow(), before + "50, 50, 50, nan, nan, 0.000, 0.000, 40.000");
  EXPECT_EQ(mac.title(), gpuName("First"));
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
