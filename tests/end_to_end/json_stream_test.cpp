// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "end_to_end/app_fixture.h"
#include "scenarios/stream_schema.h"

namespace pallimo::end_to_end {
namespace {

using JsonStream = AppWithHelperTest;

TEST_F(JsonStream, EachLineIsReadWhileTheRunGoesOn) {
  // Ten lines would not fill a buffer: each comes through the pipe by itself, and the app is still
  // there afterwards.
  const auto app = startHeadless({"--format", "json", "--speed", "20"});
  scenarios::StreamSchema schema;
  for (int line = 0; line < 10; ++line) {
    const auto text = app->readLine();
    ASSERT_TRUE(text.has_value());
    EXPECT_EQ(schema.complaintAbout(*text), "") << *text;
  }
  EXPECT_FALSE(WatchedProcess(app->number()).isGoneInTime(std::chrono::milliseconds(0)));
  app->send(SIGINT);
  app->readAll();
  EXPECT_EQ(app->exitStatus(), 0);
}

TEST_F(JsonStream, AClosedPipeEndsTheRunQuietlyWithStatus0) {
  const auto app = startHeadless({"--format", "json", "--speed", "20"});
  EXPECT_TRUE(app->readLine().has_value());
  app->closeOutput();
  EXPECT_EQ(app->exitStatus(), 0);
  EXPECT_EQ(app->errorText(), "");
}

TEST_F(JsonStream, CarriesEveryClusterOfTheDocument) {
  const auto app =
      startHeadless({"--format", "json", "--samples", "1", "--speed", "20", "--machine",
                     PALLIMO_SOURCE_DIR "/tests/recordings/membership-of-unknown-names"});
  const auto line = app->readLine();
  ASSERT_TRUE(line.has_value());
  EXPECT_NE(line->find(R"("name":"M-Cluster")"), std::string::npos) << *line;
  EXPECT_EQ(scenarios::StreamSchema().complaintAbout(*line), "");
  EXPECT_EQ(app->exitStatus(), 0);
}

}  // namespace
}  // namespace pallimo::end_to_end
