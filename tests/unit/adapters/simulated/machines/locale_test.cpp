// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "adapters/simulated/machines/machines.h"
#include "adapters/simulated/machines/powermetrics_document.h"
#include "adapters/simulated/recordings/recording_reader.h"
#include "adapters/simulated/simulation_file.h"
#include "unit/base/comma_locale.h"

namespace pallimo::adapters::simulated {
namespace {

using tests::CommaLocale;

base::Bytes document() {
  DocumentRequest request;
  request.time = 5;
  request.samplers = {.cpuPower = true, .gpuPower = true, .anePower = true, .thermal = true};
  return powermetricsDocument(builtinMachines().front(), request);
}

std::string formatted(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

TEST(CommaLocaleItself, WritesAComma) {
  const CommaLocale locale;
  EXPECT_EQ(formatted(1.5), "1,5");
}

TEST(SimulatedUnderACommaLocale, TheDocumentKeepsItsDecimalPoint) {
  const base::Bytes expected = document();
  const CommaLocale locale;
  EXPECT_EQ(document(), expected);
}

TEST(SimulatedUnderACommaLocale, TheSimulationFileKeepsItsDecimalPoint) {
  const CommaLocale locale;
  const Simulation simulation{
      .machine = "x", .recording = "", .seed = 1, .speed = 2.5, .startTime = 1790000000.25};
  const std::string text = formatSimulation(simulation);
  EXPECT_NE(text.find("\"speed\": 2.5,"), std::string::npos) << text;
  const auto parsed = parseSimulation(text);
  ASSERT_TRUE(std::holds_alternative<Simulation>(parsed));
  EXPECT_EQ(std::get<Simulation>(parsed), simulation);
}

TEST(SimulatedUnderACommaLocale, RecordingsAreReadWithADecimalPoint) {
  const CommaLocale locale;
  const auto read = parseRecording(
      R"({"format": 1, "name": "x", "sysctl": {}, "steps": [{"hid": [{"value": 45.5}]}]})", "/",
      [](const std::string&) { return ""; });
  ASSERT_TRUE(std::holds_alternative<Recording>(read));
  EXPECT_EQ(std::get<Recording>(read).steps[0].hid->at(0).value, 45.5);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
