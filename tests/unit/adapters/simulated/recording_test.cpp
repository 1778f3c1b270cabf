// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recording.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "recording_folder.h"

namespace pallimo::adapters::simulated {
namespace {

Recording withSteps(std::size_t count) {
  Recording recording;
  recording.steps.resize(count);
  return recording;
}

TEST(Recording, TheNthRequestUsesStepN) {
  const Recording recording = withSteps(3);
  EXPECT_EQ(recording.stepForRequest(1), 0u);
  EXPECT_EQ(recording.stepForRequest(2), 1u);
  EXPECT_EQ(recording.stepForRequest(3), 2u);
}

TEST(Recording, BeginsAgainAfterTheLastStep) {
  const Recording recording = withSteps(3);
  EXPECT_EQ(recording.stepForRequest(4), 0u);
  EXPECT_EQ(recording.stepForRequest(3'000'000'000'002), 1u);
}

TEST(Recording, ASingleStepServesEveryRequest) {
  EXPECT_EQ(withSteps(1).stepForRequest(1), 0u);
  EXPECT_EQ(withSteps(1).stepForRequest(1'000), 0u);
}

TEST(Recording, WhatStartUpReadsIsTheFirstStep) { EXPECT_EQ(withSteps(3).stepForRequest(0), 0u); }

class RecordingDocument : public ::testing::Test {
 protected:
  RecordingDocument() {
    recording_.folder = folder_.path();
    recording_.steps.resize(1);
  }

  RecordingFolder folder_;
  Recording recording_;
};

TEST_F(RecordingDocument, IsTheFilesBytesVerbatim) {
  const std::string bytes("\0<x>\r\n\xff\0", 8);
  folder_.write("a.plist", bytes);
  recording_.steps[0].powermetrics = "a.plist";
  EXPECT_EQ(recording_.documentBytes(0), base::Bytes(bytes.begin(), bytes.end()));
}

TEST_F(RecordingDocument, MayBeLong) {
  folder_.write("a.plist", std::string(300'001, 'x'));
  recording_.steps[0].powermetrics = "a.plist";
  EXPECT_EQ(recording_.documentBytes(0), base::Bytes(300'001, 'x'));
}

TEST_F(RecordingDocument, IsNothingWhenTheStepNamesNone) {
  EXPECT_EQ(recording_.documentBytes(0), std::nullopt);
}

TEST_F(RecordingDocument, IsNothingWhenTheFileIsEmpty) {
  folder_.write("a.plist", "");
  recording_.steps[0].powermetrics = "a.plist";
  EXPECT_EQ(recording_.documentBytes(0), std::nullopt);
}

TEST_F(RecordingDocument, IsNothingWhenTheFileHasGoneMeanwhile) {
  recording_.steps[0].powermetrics = "a.plist";
  EXPECT_EQ(recording_.documentBytes(0), std::nullopt);
}

class RecordedReport : public RecordingDocument {
 protected:
  RecordedReport() { recording_.systemProfiler = {{"SPDisplaysDataType", "displays.plist"}}; }
};

TEST_F(RecordedReport, IsTheFilesBytesVerbatim) {
  const std::string bytes("\0<x>\r\n\xff\0", 8);
  folder_.write("displays.plist", bytes);
  EXPECT_EQ(recording_.reportBytes("SPDisplaysDataType"), base::Bytes(bytes.begin(), bytes.end()));
}

TEST_F(RecordedReport, IsEmptyWhenTheFileIs) {
  folder_.write("displays.plist", "");
  EXPECT_EQ(recording_.reportBytes("SPDisplaysDataType"), base::Bytes{});
}

TEST_F(RecordedReport, IsNothingForATypeThatIsNotNamed) {
  folder_.write("displays.plist", "x");
  EXPECT_EQ(recording_.reportBytes("SPHardwareDataType"), std::nullopt);
}

TEST_F(RecordedReport, IsNothingWhenTheFileHasGoneMeanwhile) {
  EXPECT_EQ(recording_.reportBytes("SPDisplaysDataType"), std::nullopt);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
