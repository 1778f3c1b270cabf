// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/recording_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "recording_folder.h"

namespace pallimo::adapters::simulated {
namespace {

Recording read(const std::string& machineJson) {
  auto result =
      parseRecording(machineJson, "/recordings/one", [](const std::string&) { return ""; });
  if (const auto* error = std::get_if<RecordingError>(&result)) {
    ADD_FAILURE() << error->message;
    Recording none;
    none.steps.resize(1);
    return none;
  }
  return std::get<Recording>(std::move(result));
}

/// A recording whose only step has these members.
Recording readStep(const std::string& members, const std::string& smc = "{}") {
  return read(R"({"format": 1, "name": "x", "sysctl": {}, "smc": )" + smc + R"(, "steps": [{)" +
              members + "}]}");
}

/// A recording with this "smc" and a step without anything.
RecordedSmc readSmc(const std::string& smc) { return readStep("", smc).smc; }

std::array<std::uint8_t, 32> padded(std::initializer_list<std::uint8_t> bytes) {
  std::array<std::uint8_t, 32> all{};
  std::copy(bytes.begin(), bytes.end(), all.begin());
  return all;
}

constexpr const char* kLeast = R"({"format": 1, "name": "Small", "sysctl": {}, "steps": [{}]})";

TEST(RecordingReader, FillsAbsentKeysWithTheirDefaults) {
  const Recording recording = read(kLeast);
  EXPECT_EQ(recording.folder, "/recordings/one");
  EXPECT_EQ(recording.name, "Small");
  EXPECT_TRUE(recording.sysctl.empty());
  EXPECT_TRUE(recording.systemProfiler.empty());
  EXPECT_FALSE(recording.smc.isAvailable);
  EXPECT_TRUE(recording.smc.keys.empty());
  EXPECT_EQ(recording.steps, std::vector<RecordingStep>{RecordingStep{}});
}

TEST(RecordingReader, AStepWithoutKeysHasNothing) {
  const RecordingStep step = read(kLeast).steps.at(0);
  EXPECT_FALSE(step.powermetrics);
  EXPECT_TRUE(step.smc.empty());
  EXPECT_FALSE(step.hid);
  EXPECT_FALSE(step.ticks);
  EXPECT_FALSE(step.accelerators);
}

TEST(RecordingReader, ReadsControlsAsTextOrInteger) {
  const Recording recording = read(R"({"format": 1, "name": "x", "sysctl": {
      "hw.model": "Mac14,9", "hw.cputype": 16777228, "hw.memsize": 9223372036854775807,
      "negative": -9223372036854775808, "empty": ""}, "steps": [{}]})");
  const SystemControlValues expected{{"hw.model", std::string("Mac14,9")},
                                     {"hw.cputype", std::int64_t{16777228}},
                                     {"hw.memsize", INT64_MAX},
                                     {"negative", INT64_MIN},
                                     {"empty", std::string()}};
  EXPECT_EQ(recording.sysctl, expected);
}

TEST(RecordingReader, ReadsWhichFileHoldsWhichReport) {
  const Recording recording = read(R"({"format": 1, "name": "x", "sysctl": {},
      "system_profiler": {"SPDisplaysDataType": "displays.plist"}, "steps": [{}]})");
  EXPECT_EQ(recording.systemProfiler,
            (std::map<std::string, std::string>{{"SPDisplaysDataType", "displays.plist"}}));
}

TEST(RecordingReader, AnSmcThatIsWrittenDownIsAvailableUnlessItSaysOtherwise) {
  EXPECT_TRUE(readSmc("{}").isAvailable);
  EXPECT_TRUE(readSmc(R"({"available": true})").isAvailable);
  EXPECT_FALSE(readSmc(R"({"available": false})").isAvailable);
}

TEST(RecordingReader, TheKeyCountIsTheNumberOfKeysUnlessItSaysOtherwise) {
  const std::string keys =
      R"("keys": [{"key": "Te05", "type": "flt "}, {"key": "Te0L", "type": "flt "}])";
  EXPECT_EQ(readSmc("{" + keys + "}").keyCount, 2u);
  EXPECT_EQ(readSmc(R"({"keyCount": 7, )" + keys + "}").keyCount, 7u);
  EXPECT_EQ(readSmc(R"({"keyCount": 0, )" + keys + "}").keyCount, 0u);
  EXPECT_EQ(readSmc(R"({"keyCount": 4294967295})").keyCount, 4294967295u);
  EXPECT_EQ(readSmc("{}").keyCount, 0u);
}

TEST(RecordingReader, AKeyCountOfNullIsAReadThatFails) {
  EXPECT_EQ(readSmc(R"({"keyCount": null})").keyCount, std::nullopt);
}

TEST(RecordingReader, FillsAbsentMembersOfAnSmcKeyWithTheirDefaults) {
  const SmcKey key = readSmc(R"({"keys": [{"key": "Te05", "type": "flt "}]})").keys.at(0);
  EXPECT_EQ(key.key, "Te05");
  EXPECT_EQ(key.type, "flt ");
  EXPECT_EQ(key.size, 4u);
  EXPECT_EQ(key.bytes, std::nullopt);
  EXPECT_FALSE(key.indexFails);
  EXPECT_FALSE(key.infoFails);
}

TEST(RecordingReader, ReadsEveryMemberOfAnSmcKey) {
  const SmcKey key = readSmc(R"({"keys": [{"key": "#KEY", "type": "ui32", "size": 0,
      "bytes": "00003442", "indexFails": true, "infoFails": true}]})")
                         .keys.at(0);
  EXPECT_EQ(key, (SmcKey{"#KEY", "ui32", 0, padded({0x00, 0x00, 0x34, 0x42}), true, true}));
}

TEST(RecordingReader, SmcBytesAreHexAndTheRestIsZero) {
  const auto bytesOf = [](const std::string& hex) {
    return readSmc(R"({"keys": [{"key": "Te05", "type": "flt ", "bytes": )" + hex + "}]}")
        .keys.at(0)
        .bytes;
  };
  EXPECT_EQ(bytesOf(R"("aBcD")"), padded({0xAB, 0xCD}));
  EXPECT_EQ(bytesOf(R"("")"), padded({}));
  EXPECT_EQ(bytesOf("\"" + std::string(64, 'f') + "\"").value().back(), 0xFF);
  EXPECT_EQ(bytesOf("null"), std::nullopt);
}

TEST(RecordingReader, KeepsTheIndexOrderOfSmcKeys) {
  const auto keys = readSmc(R"({"keys": [{"key": "zzzz", "type": "flt "},
      {"key": "aaaa", "type": "flt "}]})")
                        .keys;
  ASSERT_EQ(keys.size(), 2u);
  EXPECT_EQ(keys[0].key, "zzzz");
  EXPECT_EQ(keys[1].key, "aaaa");
}

TEST(RecordingReader, AStepNamesItsDocument) {
  EXPECT_EQ(readStep(R"("powermetrics": "0001.plist")").steps[0].powermetrics, "0001.plist");
  EXPECT_EQ(readStep(R"("powermetrics": "day one/..plist")").steps[0].powermetrics,
            "day one/..plist");
}

TEST(RecordingReader, ADocumentOfNullIsNoDocument) {
  EXPECT_EQ(readStep(R"("powermetrics": null)").steps[0].powermetrics, std::nullopt);
}

TEST(RecordingReader, AStepChangesSmcBytes) {
  const auto smc = readStep(R"("smc": {"Te05": "01", "Te0L": null})",
                            R"({"keys": [{"key": "Te05", "type": "flt "},
                                         {"key": "Te0L", "type": "flt ", "bytes": "02"}]})")
                       .steps[0]
                       .smc;
  EXPECT_EQ(smc, (std::map<std::string, SmcBytes>{{"Te05", padded({1})}, {"Te0L", std::nullopt}}));
}

TEST(RecordingReader, HidReadingsMayLackLocationAndValue) {
  const auto hid = readStep(R"("hid": [{"LocationID": 1416638569, "value": 45.5},
      {"LocationID": "x", "value": null}, {"value": -1}, {"LocationID": 1.5}, {"LocationID": null},
      {"LocationID": -5}, {"LocationID": 18446744073709551615}])")
                       .steps[0]
                       .hid;
  EXPECT_EQ(hid, (std::vector<HidReading>{{1416638569, 45.5},
                                          {std::nullopt, std::nullopt},
                                          {std::nullopt, -1.0},
                                          {},
                                          {},
                                          {-5, std::nullopt},
                                          {}}));
}

TEST(RecordingReader, NoServicesAndNoSensorsDiffer) {
  EXPECT_EQ(readStep(R"("hid": null)").steps[0].hid, std::nullopt);
  EXPECT_EQ(readStep(R"("hid": [])").steps[0].hid, std::vector<HidReading>{});
}

TEST(RecordingReader, ReadsFourCountersPerProcessor) {
  const auto ticks = readStep(R"("ticks": [[1, 2, 3, 4], [0, 0, 4294967295, 0]])").steps[0].ticks;
  EXPECT_EQ(ticks, (std::vector<ports::ProcessorTickCounts>{{1, 2, 3, 4}, {0, 0, 4294967295, 0}}));
}

TEST(RecordingReader, TicksOfNullAreACallThatFails) {
  EXPECT_EQ(readStep(R"("ticks": null)").steps[0].ticks, std::nullopt);
}

TEST(RecordingReader, StepsMayDifferInTheirNumberOfProcessors) {
  const auto steps = read(R"({"format": 1, "name": "x", "sysctl": {}, "steps": [
      {"ticks": [[1, 1, 1, 1]]}, {"ticks": [[1, 1, 1, 1], [2, 2, 2, 2]]}, {"ticks": []}]})")
                         .steps;
  ASSERT_EQ(steps.size(), 3u);
  EXPECT_EQ(steps[0].ticks->size(), 1u);
  EXPECT_EQ(steps[1].ticks->size(), 2u);
  EXPECT_EQ(steps[2].ticks->size(), 0u);
}

RecordedAccelerator readAccelerator(const std::string& entry) {
  return readStep(R"("accelerators": [)" + entry + "]").steps[0].accelerators.value().at(0);
}

TEST(RecordingReader, ReadsAnAccelerator) {
  const auto accelerator = readAccelerator(R"({"vendor-id": "6B100000", "model": "Apple M2 Pro",
      "PerformanceStatistics": {"Device Utilization %": 37}, "readFailures": 2})");
  EXPECT_EQ(*accelerator.vendorId->data(), (base::Bytes{0x6B, 0x10, 0, 0}));
  EXPECT_EQ(*accelerator.model->text(), "Apple M2 Pro");
  const auto* utilization = accelerator.performanceStatistics->find("Device Utilization %");
  ASSERT_NE(utilization, nullptr);
  EXPECT_EQ(utilization->numberOr(-1), 37);
  EXPECT_EQ(accelerator.readFailures, 2u);
}

TEST(RecordingReader, AnAcceleratorMayFailAThousandTimes) {
  EXPECT_EQ(readAccelerator(R"({"readFailures": 1000})").readFailures, 1000u);
}

TEST(RecordingReader, AcceleratorPropertiesMayBeAbsent) {
  EXPECT_EQ(readAccelerator("{}"), RecordedAccelerator{});
  EXPECT_EQ(readAccelerator(R"({"vendor-id": null, "model": null, "PerformanceStatistics": null})"),
            RecordedAccelerator{});
}

TEST(RecordingReader, AcceleratorPropertiesMayBeOfAnyType) {
  const auto accelerator = readAccelerator(
      R"({"vendor-id": 4203, "model": [true, null, 1.5], "PerformanceStatistics": "none"})");
  EXPECT_EQ(accelerator.vendorId->numberOr(-1), 4203);
  EXPECT_EQ(*accelerator.performanceStatistics->text(), "none");
  const auto* elements = accelerator.model->array();
  ASSERT_NE(elements, nullptr);
  ASSERT_EQ(elements->size(), 2u);  // a registry has no null
  EXPECT_TRUE(*elements->at(0).boolean());
  EXPECT_EQ(elements->at(1).numberOr(-1), 1.5);
}

TEST(RecordingReader, StatisticsMayHoldAnything) {
  const auto statistics = *readAccelerator(R"({"PerformanceStatistics": {"a": {"b": [-1]},
      "big": 18446744073709551615, "no": null}})")
                               .performanceStatistics;
  std::int64_t inner = 0;
  EXPECT_TRUE(statistics.find("a")->find("b")->array()->at(0).readInteger(inner));
  EXPECT_EQ(inner, -1);
  EXPECT_EQ(statistics.find("big")->numberOr(0), 18446744073709551615.0);
  EXPECT_EQ(statistics.find("no"), nullptr);
}

TEST(RecordingReader, AFailedSearchAndNoAcceleratorDiffer) {
  EXPECT_EQ(readStep(R"("accelerators": null)").steps[0].accelerators, std::nullopt);
  EXPECT_EQ(readStep(R"("accelerators": [])").steps[0].accelerators,
            std::vector<RecordedAccelerator>{});
}

TEST(RecordingReader, ReadsAFolder) {
  const RecordingFolder folder;
  folder.write("0001.plist", "<plist/>");
  folder.write("reports/displays.plist", "x");
  folder.write("machine.json", R"({"format": 1, "name": "Small", "sysctl": {},
      "system_profiler": {"SPDisplaysDataType": "reports/displays.plist"},
      "steps": [{"powermetrics": "0001.plist"}]})");
  const auto result = readRecording(folder.path());
  ASSERT_TRUE(std::holds_alternative<Recording>(result))
      << std::get<RecordingError>(result).message;
  EXPECT_EQ(std::get<Recording>(result).folder, folder.path());
}

}  // namespace
}  // namespace pallimo::adapters::simulated
