// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>

#include "end_to_end/app_fixture.h"
#include "json_stream/stream_schema.h"

namespace pallimo::end_to_end {
namespace {

using JsonStream = AppWithHelperTest;

TEST_F(JsonStream, EachLineIsReadWhileTheRunGoesOn) {
  // Ten lines would not fill a buffer: each comes through the pipe by itself, and the app is still
  // there afterwards.
  const auto app = startHeadless({"--format", "json", "--speed", "20"});
  json_stream::StreamSchema schema;
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

TEST_F(JsonStream, AFileGrowsByWholeLinesWhileTheRunGoesOn) {
  const fs::path file = root_ / "samples.json";
  const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_GE(descriptor, 0);
  AppProcess app({"--headless", "--format", "json", "--speed", "20", "--state-dir", stateFolder()},
                 root_ / "said", {}, descriptor);
  close(descriptor);
  const auto deadline = std::chrono::steady_clock::now() + kGenerous;
  std::string text;
  // A buffer that is emptied when it is full leaves a part of a line there for a while; a read in
  // the middle of a write sees one too, but not for long.
  int parts = 0;
  while (std::count(text.begin(), text.end(), '\n') < 5 && parts < 40 &&
         std::chrono::steady_clock::now() < deadline) {
    poll(nullptr, 0, 5);
    text = textOf(file);
    parts = text.empty() || text.back() == '\n' ? 0 : parts + 1;
  }
  EXPECT_EQ(parts, 0) << text;
  EXPECT_GE(std::count(text.begin(), text.end(), '\n'), 5);
  app.send(SIGINT);
  EXPECT_EQ(app.exitStatus(), 0) << app.errorText();
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
  EXPECT_EQ(json_stream::StreamSchema().complaintAbout(*line), "");
  EXPECT_EQ(app->exitStatus(), 0);
}

}  // namespace
}  // namespace pallimo::end_to_end
