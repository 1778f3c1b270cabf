// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "adapters/simulated/recordings/recording_reader.h"
#include "recording_folder.h"

namespace pallimo::adapters::simulated {
namespace {

/// What is wrong in a machine.json, and the whole line that says so.
struct Damage {
  std::string machineJson;
  std::string line;
};

std::ostream& operator<<(std::ostream& out, const Damage& broken) {
  return out << broken.machineJson;
}

std::string lineOf(const std::variant<Recording, RecordingError>& result) {
  const auto* error = std::get_if<RecordingError>(&result);
  return error == nullptr ? "no error" : error->message;
}

Damage machine(const std::string& members, const std::string& line) {
  return {"{" + members + "}", "machine.json: " + line};
}

Damage smc(const std::string& smc, const std::string& line) {
  return machine(R"("format": 1, "name": "x", "sysctl": {}, "steps": [{}], "smc": )" + smc, line);
}

Damage smcKey(const std::string& key, const std::string& line) {
  return smc(R"({"keys": [)" + key + "]}", line);
}

/// The step is the second one.
Damage step(const std::string& step, const std::string& line) {
  return machine(R"("format": 1, "name": "x", "sysctl": {},
      "smc": {"keys": [{"key": "Te05", "type": "flt "}]}, "steps": [{}, )" +
                     step + "]",
                 line);
}

class BrokenRecording : public ::testing::TestWithParam<Damage> {};

TEST_P(BrokenRecording, IsRefusedWithOneLine) {
  const auto result =
      parseRecording(GetParam().machineJson, "/recordings/one", [](const std::string& file) {
        return file == "gone.plist" ? "No such file or directory" : "";
      });
  EXPECT_EQ(lineOf(result), GetParam().line);
}

const std::vector<Damage> kTop{
    {"", "machine.json: line 1, column 1: expected JSON, got something else"},
    {"{,}", "machine.json: line 1, column 2: expected JSON, got something else"},
    {"[]", "machine.json: expected an object, got an empty array"},
    {"7", "machine.json: expected an object, got 7"},
    machine(R"("name": "x", "sysctl": {}, "steps": [{}])", "format: expected 1, got nothing"),
    machine(R"("format": 2, "name": "x", "sysctl": {}, "steps": [{}])",
            "format: expected 1, got 2"),
    machine(R"("format": 1.0, "name": "x", "sysctl": {}, "steps": [{}])",
            "format: expected 1, got 1.0"),
    machine(R"("format": "1", "name": "x", "sysctl": {}, "steps": [{}])",
            R"(format: expected 1, got "1")"),
    machine(R"("format": true, "name": "x", "sysctl": {}, "steps": [{}])",
            "format: expected 1, got true"),
    machine(R"("format": 1, "sysctl": {}, "steps": [{}])", "name: expected a text, got nothing"),
    machine(R"("format": 1, "name": null, "sysctl": {}, "steps": [{}])",
            "name: expected a text, got null"),
    machine(R"("format": 1, "name": "x", "steps": [{}])",
            "sysctl: expected an object, got nothing"),
    machine(R"("format": 1, "name": "x", "sysctl": [1], "steps": [{}])",
            "sysctl: expected an object, got an array"),
    machine(R"("format": 1, "name": "x", "sysctl": {"hw.model": 1.5}, "steps": [{}])",
            R"(sysctl["hw.model"]: expected a text or a signed 64-bit integer, got 1.5)"),
    machine(R"("format": 1, "name": "x", "sysctl": {"a": 9223372036854775808}, "steps": [{}])",
            "sysctl.a: expected a text or a signed 64-bit integer, got 9223372036854775808"),
    machine(R"("format": 1, "name": "x", "sysctl": {"a": null}, "steps": [{}])",
            "sysctl.a: expected a text or a signed 64-bit integer, got null"),
    machine(R"("format": 1, "name": "x", "sysctl": {}, "steps": [{}], "system_profiler": null)",
            "system_profiler: expected an object, got null"),
    machine(R"("format": 1, "name": "x", "sysctl": {}, "steps": [{}], "system_profiler": {"A": 1})",
            "system_profiler.A: expected the name of a file in the recording's folder, got 1"),
    machine(R"("format": 1, "name": "x", "sysctl": {}, "steps": [{}],
               "system_profiler": {"A": "gone.plist"})",
            R"(system_profiler.A: expected a readable file, got "gone.plist": )"
            "No such file or directory"),
    machine(R"("format": 1, "name": "x", "sysctl": {})",
            "steps: expected an array of at least one step, got nothing"),
    machine(R"("format": 1, "name": "x", "sysctl": {}, "steps": [])",
            "steps: expected an array of at least one step, got an empty array"),
    machine(R"("format": 1, "name": "x", "sysctl": {}, "steps": {})",
            "steps: expected an array of at least one step, got an object"),
    machine(R"("format": 1, "name": "x", "sysctl": {}, "steps": [{}], "colour": 1)",
            "colour: expected one of the keys format, name, sysctl, system_profiler, smc, steps, "
            "got an unknown key"),
    machine(R"("format": 1, "name": "x", "sysctl": {}, "steps": [{}], "a\nb": 1)",
            R"(["a\nb"]: expected one of the keys format, name, sysctl, system_profiler, smc, )"
            "steps, got an unknown key"),
    machine(R"("format": 1, "format": 1, "name": "x", "sysctl": {}, "steps": [{}])",
            "format: expected each key once, got it twice"),
};
INSTANTIATE_TEST_SUITE_P(Top, BrokenRecording, ::testing::ValuesIn(kTop));

const std::vector<Damage> kSmc{
    smc("null", "smc: expected an object, got null"),
    smc(R"({"open": true})",
        "smc.open: expected one of the keys available, keyCount, keys, got an unknown key"),
    smc(R"({"available": 1})", "smc.available: expected true or false, got 1"),
    smc(R"({"keyCount": -1})", "smc.keyCount: expected an unsigned 32-bit number, got -1"),
    smc(R"({"keyCount": 4294967296})",
        "smc.keyCount: expected an unsigned 32-bit number, got 4294967296"),
    smc(R"({"keyCount": 2.0})", "smc.keyCount: expected an unsigned 32-bit number, got 2.0"),
    smc(R"({"keys": null})", "smc.keys: expected an array, got null"),
    smcKey("7", "smc.keys[0]: expected an object, got 7"),
    smcKey(R"({"type": "flt "})",
           "smc.keys[0].key: expected a text of four ASCII characters, got nothing"),
    smcKey(R"({"key": "Te5", "type": "flt "})",
           R"(smc.keys[0].key: expected a text of four ASCII characters, got "Te5")"),
    smcKey(R"({"key": 5, "type": "flt "})",
           "smc.keys[0].key: expected a text of four ASCII characters, got 5"),
    smcKey(R"({"key": "Te°", "type": "flt "})",
           R"(smc.keys[0].key: expected a text of four ASCII characters, got "Te°")"),
    smcKey(R"({"key": "Te05", "type": "fl°"})",
           R"(smc.keys[0].type: expected a text of four ASCII characters, got "fl°")"),
    smcKey(R"({"key": "Te05"})",
           "smc.keys[0].type: expected a text of four ASCII characters, got nothing"),
    smcKey(R"({"key": "Te05", "type": "flt"})",
           R"(smc.keys[0].type: expected a text of four ASCII characters, got "flt")"),
    smcKey(R"({"key": "Te05", "type": "flt ", "size": "4"})",
           R"(smc.keys[0].size: expected an unsigned 32-bit number, got "4")"),
    smcKey(R"({"key": "Te05", "type": "flt ", "bytes": "0"})",
           R"(smc.keys[0].bytes: expected at most 32 bytes in hex, or null, got "0")"),
    smcKey(R"({"key": "Te05", "type": "flt ", "bytes": "0x12"})",
           R"(smc.keys[0].bytes: expected at most 32 bytes in hex, or null, got "0x12")"),
    smcKey(R"({"key": "Te05", "type": "flt ", "bytes": 12})",
           "smc.keys[0].bytes: expected at most 32 bytes in hex, or null, got 12"),
    smcKey(R"({"key": "Te05", "type": "flt ", "bytes": ")" + std::string(66, '0') + R"("})",
           "smc.keys[0].bytes: expected at most 32 bytes in hex, or null, got \"" +
               std::string(60, '0') + "...\""),
    smcKey(R"({"key": "Te05", "type": "flt ", "indexFails": 1})",
           "smc.keys[0].indexFails: expected true or false, got 1"),
    smcKey(R"({"key": "Te05", "type": "flt ", "infoFails": null})",
           "smc.keys[0].infoFails: expected true or false, got null"),
    smcKey(R"({"key": "Te05", "type": "flt ", "value": 1})",
           "smc.keys[0].value: expected one of the keys key, type, size, bytes, indexFails, "
           "infoFails, got an unknown key"),
};
INSTANTIATE_TEST_SUITE_P(Smc, BrokenRecording, ::testing::ValuesIn(kSmc));

const std::vector<Damage> kFiles{
    step(R"({"powermetrics": 1})",
         "steps[1].powermetrics: expected the name of a file in the recording's folder, got 1"),
    step(R"({"powermetrics": ""})",
         "steps[1].powermetrics: expected the name of a file in the recording's folder, got \"\""),
    step(R"({"powermetrics": "/etc/hosts"})",
         "steps[1].powermetrics: expected the name of a file in the recording's folder, got "
         "\"/etc/hosts\""),
    step(R"({"powermetrics": "../x"})",
         "steps[1].powermetrics: expected the name of a file in the recording's folder, got "
         "\"../x\""),
    step(R"({"powermetrics": "a/../../x"})",
         "steps[1].powermetrics: expected the name of a file in the recording's folder, got "
         "\"a/../../x\""),
    step(R"({"powermetrics": "a/.."})",
         "steps[1].powermetrics: expected the name of a file in the recording's folder, got "
         "\"a/..\""),
    step(R"({"powermetrics": "a\u0000b"})",
         "steps[1].powermetrics: expected the name of a file in the recording's folder, got "
         R"("a\u0000b")"),
    step(R"({"powermetrics": "gone.plist"})",
         "steps[1].powermetrics: expected a readable file, got \"gone.plist\": No such file or "
         "directory"),
};
INSTANTIATE_TEST_SUITE_P(Files, BrokenRecording, ::testing::ValuesIn(kFiles));

const std::vector<Damage> kSteps{
    step("null", "steps[1]: expected an object, got null"),
    step(R"({"fans": 1})",
         "steps[1].fans: expected one of the keys powermetrics, smc, hid, ticks, accelerators, got "
         "an unknown key"),
    step(R"({"smc": []})", "steps[1].smc: expected an object, got an empty array"),
    step(R"({"smc": {"Te05": 4}})",
         "steps[1].smc.Te05: expected at most 32 bytes in hex, or null, got 4"),
    step(R"({"smc": {"Te06": "00"}})",
         "steps[1].smc.Te06: expected the name of a key in smc.keys, got an unknown key"),
    step(R"({"hid": {}})", "steps[1].hid: expected an array or null, got an object"),
    step(R"({"hid": [4]})", "steps[1].hid[0]: expected an object, got 4"),
    step(R"({"hid": [{"value": "hot"}]})", "steps[1].hid[0].value: expected a number, got \"hot\""),
    step(R"({"hid": [{}, {"Location": 1}]})",
         "steps[1].hid[1].Location: expected one of the keys LocationID, value, got an unknown "
         "key"),
    step(R"({"ticks": 4})", "steps[1].ticks: expected an array or null, got 4"),
    step(R"({"ticks": [null]})",
         "steps[1].ticks[0]: expected four unsigned 32-bit numbers, got null"),
    step(R"({"ticks": [[1, 2, 3]]})",
         "steps[1].ticks[0]: expected four unsigned 32-bit numbers, got three"),
    step(R"({"ticks": [[1, 2, 3, 4], [1, 2, 3, 4, 5]]})",
         "steps[1].ticks[1]: expected four unsigned 32-bit numbers, got five"),
    step(R"({"ticks": [[1, -2, 3, 4]]})",
         "steps[1].ticks[0][1]: expected an unsigned 32-bit number, got -2"),
    step(R"({"ticks": [[1, 2, 3, 4294967296]]})",
         "steps[1].ticks[0][3]: expected an unsigned 32-bit number, got 4294967296"),
    step(R"({"ticks": [[1, 2, 3.5, 4]]})",
         "steps[1].ticks[0][2]: expected an unsigned 32-bit number, got 3.5"),
    step(R"({"accelerators": "none"})",
         "steps[1].accelerators: expected an array or null, got \"none\""),
    step(R"({"accelerators": [null]})", "steps[1].accelerators[0]: expected an object, got null"),
    step(R"({"accelerators": [{"vendor-id": "6B1"}]})",
         "steps[1].accelerators[0].vendor-id: expected bytes in hex, got \"6B1\""),
    step(R"({"accelerators": [{"readFailures": -1}]})",
         "steps[1].accelerators[0].readFailures: expected a whole number from 0 to 1000, got -1"),
    step(R"({"accelerators": [{"readFailures": 1001}]})",
         "steps[1].accelerators[0].readFailures: expected a whole number from 0 to 1000, got 1001"),
    step(R"({"accelerators": [{"readFailures": 1.0}]})",
         "steps[1].accelerators[0].readFailures: expected a whole number from 0 to 1000, got 1.0"),
    step(R"({"accelerators": [{"readFailures": null}]})",
         "steps[1].accelerators[0].readFailures: expected a whole number from 0 to 1000, got null"),
    step(R"({"accelerators": [{"readFailures": "2"}]})",
         "steps[1].accelerators[0].readFailures: expected a whole number from 0 to 1000, got "
         "\"2\""),
    step(R"({"accelerators": [{"vendor": 1}]})",
         "steps[1].accelerators[0].vendor: expected one of the keys vendor-id, model, "
         "PerformanceStatistics, readFailures, got an unknown key"),
    step(R"({"accelerators": [{"PerformanceStatistics": {"a": 1, "a": 2}}]})",
         "steps[1].accelerators[0].PerformanceStatistics.a: expected each key once, got it twice"),
};
INSTANTIATE_TEST_SUITE_P(Steps, BrokenRecording, ::testing::ValuesIn(kSteps));

std::string lineOfFolder(const RecordingFolder& folder, const std::string& document) {
  folder.write("machine.json", R"({"format": 1, "name": "x", "sysctl": {},
      "steps": [{"powermetrics": ")" +
                                   document + R"("}]})");
  return lineOf(readRecording(folder.path()));
}

TEST(RecordingFolders, AFolderThatDoesNotExistIsRefused) {
  EXPECT_EQ(lineOf(readRecording("/nonexistent/recording")),
            "machine.json: expected a readable file, got: No such file or directory");
}

TEST(RecordingFolders, AFolderWithoutMachineFileIsRefused) {
  const RecordingFolder folder;
  EXPECT_EQ(lineOf(readRecording(folder.path())),
            "machine.json: expected a readable file, got: No such file or directory");
}

TEST(RecordingFolders, AMachineFileThatIsAFolderIsRefused) {
  const RecordingFolder folder;
  std::filesystem::create_directory(folder.pathOf("machine.json"));
  EXPECT_EQ(lineOf(readRecording(folder.path())),
            "machine.json: expected a readable file, got: Not a regular file");
}

TEST(RecordingFolders, ADocumentThatDoesNotExistIsRefused) {
  const RecordingFolder folder;
  EXPECT_EQ(lineOfFolder(folder, "0001.plist"),
            "machine.json: steps[0].powermetrics: expected a readable file, got \"0001.plist\": No "
            "such file or directory");
}

TEST(RecordingFolders, ADocumentThatIsAFolderIsRefused) {
  const RecordingFolder folder;
  std::filesystem::create_directory(folder.pathOf("0001.plist"));
  EXPECT_EQ(
      lineOfFolder(folder, "0001.plist"),
      "machine.json: steps[0].powermetrics: expected a readable file, got \"0001.plist\": Not "
      "a regular file");
}

TEST(RecordingFolders, AReportThatDoesNotExistIsRefused) {
  const RecordingFolder folder;
  folder.write("machine.json", R"({"format": 1, "name": "x", "sysctl": {}, "steps": [{}],
      "system_profiler": {"SPDisplaysDataType": "displays.plist"}})");
  EXPECT_EQ(lineOf(readRecording(folder.path())),
            "machine.json: system_profiler.SPDisplaysDataType: expected a readable file, got "
            "\"displays.plist\": No such file or directory");
}

TEST(RecordingFolders, ADocumentThatIsTooLargeIsRefused) {
  const RecordingFolder folder;
  folder.write("0001.plist", "x");
  std::filesystem::resize_file(folder.pathOf("0001.plist"), 67'108'864);
  EXPECT_EQ(lineOfFolder(folder, "0001.plist"), "no error");
  std::filesystem::resize_file(folder.pathOf("0001.plist"), 67'108'865);
  EXPECT_EQ(lineOfFolder(folder, "0001.plist"),
            "machine.json: steps[0].powermetrics: expected a readable file, got \"0001.plist\": "
            "Larger than 67108864 bytes");
}

TEST(RecordingFolders, ADocumentThatIsThereIsAccepted) {
  const RecordingFolder folder;
  folder.write("0001.plist", "");
  EXPECT_EQ(lineOfFolder(folder, "0001.plist"), "no error");
}

}  // namespace
}  // namespace pallimo::adapters::simulated
