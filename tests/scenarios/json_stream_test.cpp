// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// The stream of --format json: every line of it against the published schema, on every built-in
// machine and every recording.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "adapters/simulated/machines/machines.h"
#include "adapters/simulated/recordings/recording_reader.h"
#include "adapters/simulated/simulation_file.h"
#include "app/headless/headless_format.h"
#include "json_stream/stream_schema.h"
#include "scenarios/recorded_mac.h"
#include "scenarios/whole_program.h"
#include "unit/logging/page.h"

namespace pallimo::scenarios {
namespace {

namespace fs = std::filesystem;
using adapters::simulated::Simulation;
using json_stream::StreamSchema;
using nlohmann::ordered_json;
using Lines = std::vector<std::string>;

/// The lines that a machine's rows give, each written as a headless run writes it.
Lines linesOf(const Simulation& simulation, std::size_t requests) {
  Lines lines;
  RecordedMac mac(simulation);
  const app::GeneralModel& general = mac.general();
  const auto format = app::makeHeadlessFormat(app::OutputFormat::json);
  general.sampleRows()->addReceiver([&](const logging::LogRow& row) {
    lines.push_back(format->format({row, general.modelPowerMetrics()->getClusters()}));
  });
  for (std::size_t request = 0; request < requests; ++request) mac.nextRow();
  return lines;
}

Simulation recording(const std::string& name) {
  Simulation simulation;
  simulation.recording = PALLIMO_SOURCE_DIR "/tests/recordings/" + name;
  return simulation;
}

/// The lines of all steps of a recording.
Lines linesOfRecording(const std::string& name) {
  const Simulation simulation = recording(name);
  const auto read = adapters::simulated::readRecording(simulation.recording);
  const auto* steps = std::get_if<adapters::simulated::Recording>(&read);
  return steps == nullptr ? Lines() : linesOf(simulation, steps->steps.size());
}

Simulation builtIn(const std::string& name) {
  Simulation simulation;
  simulation.machine = name;
  return simulation;
}

Lines recordings() {
  Lines names;
  for (const auto& entry : fs::directory_iterator(PALLIMO_SOURCE_DIR "/tests/recordings")) {
    if (entry.is_directory()) names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Lines builtInMachines() {
  Lines names;
  for (const auto& machine : adapters::simulated::builtinMachines()) names.push_back(machine.name);
  return names;
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::erase_if(name, [](unsigned char letter) { return std::isalnum(letter) == 0; });
  return name;
}

void expectGood(const Lines& lines) {
  StreamSchema schema;
  for (const std::string& line : lines) EXPECT_EQ(schema.complaintAbout(line), "") << line;
}

class StreamOfARecording : public testing::TestWithParam<std::string> {};

TEST_P(StreamOfARecording, IsWhatTheSchemaSays) {
  const Lines lines = linesOfRecording(GetParam());
  EXPECT_FALSE(lines.empty());
  expectGood(lines);
}

INSTANTIATE_TEST_SUITE_P(All, StreamOfARecording, testing::ValuesIn(recordings()), testName);

class StreamOfAMachine : public testing::TestWithParam<std::string> {};

TEST_P(StreamOfAMachine, IsWhatTheSchemaSays) {
  const Lines lines = linesOf(builtIn(GetParam()), 3);
  ASSERT_EQ(lines.size(), 3u);
  expectGood(lines);
}

TEST_P(StreamOfAMachine, NamesItsClustersAndEveryProcessorOnce) {
  const auto object = ordered_json::parse(linesOf(builtIn(GetParam()), 1).at(0));
  std::vector<int> processors;
  for (const auto& cluster : object["clusters"]) {
    EXPECT_NE(cluster["name"].get<std::string>(), "");
    EXPECT_GT(cluster["frequency"].get<double>(), 0);
    EXPECT_FALSE(cluster["cpus"].empty());
    for (const int cpu : cluster["cpus"]) processors.push_back(cpu);
  }
  std::sort(processors.begin(), processors.end());
  ASSERT_FALSE(processors.empty());
  for (std::size_t i = 0; i < processors.size(); ++i) EXPECT_EQ(processors[i], static_cast<int>(i));
}

INSTANTIATE_TEST_SUITE_P(All, StreamOfAMachine, testing::ValuesIn(builtInMachines()), testName);

TEST(JsonStream, CarriesClustersThatThePanelsDoNotKnow) {
  const Lines lines = linesOfRecording("membership-of-unknown-names");
  ASSERT_FALSE(lines.empty());
  const auto clusters = ordered_json::parse(lines[0])["clusters"];
  Lines names;
  for (const auto& cluster : clusters) names.push_back(cluster["name"]);
  EXPECT_NE(std::find(names.begin(), names.end(), "M-Cluster"), names.end());
}

TEST(JsonStream, HasTheSchemasKeysInItsOrderAndNoOther) {
  const auto object = ordered_json::parse(linesOf(builtIn("MacBook Pro M2 Pro"), 1).at(0));
  const StreamSchema schema;
  const auto keysOf = [](const ordered_json& members) {
    Lines keys;
    for (const auto& item : members.items()) keys.push_back(item.key());
    return keys;
  };
  EXPECT_EQ(keysOf(object), keysOf(schema.document()["properties"]));
  EXPECT_EQ(keysOf(object["clusters"][0]),
            keysOf(schema.document()["definitions"]["cluster"]["properties"]));
}

TEST(JsonStream, EveryKeyOfTheSchemaIsARowOfThePage) {
  Lines keys;
  const StreamSchema schema;
  for (const auto& item : schema.document()["properties"].items()) {
    keys.push_back("`" + item.key() + "`");
  }
  EXPECT_EQ(tests::Page("json-stream.md").cells("## A line", 0), keys);
}

TEST(JsonStream, ThePagesExampleIsALine) {
  const Lines page = tests::Page("json-stream.md").lines();
  const auto line = std::find_if(page.begin(), page.end(),
                                 [](const std::string& text) { return text.starts_with("{"); });
  ASSERT_NE(line, page.end());
  expectGood({*line});
}

/// A good line, for a test that spoils it.
ordered_json goodLine() {
  return ordered_json::parse(linesOf(builtIn("MacBook Pro M2 Pro"), 1).at(0));
}

TEST(StreamSchemaTest, RefusesALineThatLacksAKey) {
  StreamSchema schema;
  const ordered_json good = goodLine();
  EXPECT_EQ(schema.complaintAbout(good.dump()), "");
  for (const auto& item : good.items()) {
    ordered_json bad = good;
    bad.erase(item.key());
    EXPECT_NE(schema.complaintAbout(bad.dump()), "") << item.key();
  }
}

TEST(StreamSchemaTest, RefusesAnotherKindOfValue) {
  StreamSchema schema;
  const ordered_json good = goodLine();
  for (const auto& item : good.items()) {
    ordered_json bad = good;
    bad[item.key()] = true;
    EXPECT_NE(schema.complaintAbout(bad.dump()), "") << item.key();
  }
}

TEST(StreamSchemaTest, RefusesAnotherFormOfTime) {
  StreamSchema schema;
  ordered_json bad = goodLine();
  for (const char* text :
       {"14:02:33.123", "2026-03-05T14:02:33Z", "2026-03-05T14:02:33.123+0100"}) {
    bad["timeStamp"] = text;
    EXPECT_NE(schema.complaintAbout(bad.dump()), "") << text;
  }
}

TEST(StreamSchemaTest, RefusesClustersOfAnotherShape) {
  StreamSchema schema;
  ordered_json bad = goodLine();
  for (const char* clusters : {R"([3])", R"([{}])", R"([{"name": "A", "frequency": 1}])",
                               R"([{"name": "A", "frequency": "1", "cpus": []}])",
                               R"([{"name": 1, "frequency": 1, "cpus": []}])",
                               R"([{"name": "A", "frequency": 1, "cpus": [1.5]}])", R"({})"}) {
    bad["clusters"] = ordered_json::parse(clusters);
    EXPECT_NE(schema.complaintAbout(bad.dump()), "") << clusters;
  }
}

TEST(StreamSchemaTest, TakesAKeyThatALaterVersionAdds) {
  ordered_json later = goodLine();
  later["fanSpeed"] = 1200;
  EXPECT_EQ(StreamSchema().complaintAbout(later.dump()), "");
}

/// A headless run that prints JSON.
class PrintedStream : public WholeProgram {
 protected:
  PrintedStream() { settings_.format = app::OutputFormat::json; }

  void sendWithoutPrinting(double efficiencyHz) {
    SampleDocument sample;
    sample.efficiencyHz = efficiencyHz;
    helper().sendResult(bytesOf(sample));
  }
  static double firstFrequencyIn(const std::string& line) {
    return ordered_json::parse(line)["clusters"][0]["frequency"];
  }
};

TEST_F(PrintedStream, ALineIsOutBeforeTheNextSampleComes) {
  startWithUsableHelper();
  for (int sample = 0; sample < 3; ++sample) {
    helperSends();
    EXPECT_EQ(output_.takeLines().size(), 1u);
  }
}

TEST_F(PrintedStream, ALinesClustersAreThoseOfItsOwnDocument) {
  startWithUsableHelper();
  sendWithoutPrinting(1.0e9);
  sendWithoutPrinting(2.0e9);  // both have come before the first one is printed
  queue().run();
  const Lines lines = output_.takeLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(firstFrequencyIn(lines[0]), 1000);
  EXPECT_EQ(firstFrequencyIn(lines[1]), 2000);
  expectGood(lines);
}

TEST_F(PrintedStream, ADocumentThatCannotBeReadHasNoClusters) {
  startWithUsableHelper();
  helper().sendResult(base::Bytes{'x'});
  queue().run();
  const Lines lines = output_.takeLines();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(ordered_json::parse(lines[0])["clusters"], ordered_json::array());
  expectGood(lines);
}

TEST_F(PrintedStream, AReaderThatIsGoneEndsTheRunQuietly) {
  startWithUsableHelper();
  helperSends();
  output_.state = ports::StandardOutput::State::closed;
  helperSends();
  EXPECT_EQ(ending(), "0");
}

}  // namespace
}  // namespace pallimo::scenarios
