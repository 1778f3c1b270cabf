// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/recordings/recording.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <variant>

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
    recording_.steps[0].powermetrics = "a.plist";
  }

  base::Bytes document() const {
    const auto read = recording_.documentBytes(0);
    const auto* bytes = std::get_if<base::Bytes>(&read);
    if (bytes == nullptr) ADD_FAILURE() << "no document";
    return bytes == nullptr ? base::Bytes{} : *bytes;
  }
  std::string whyThereIsNone() const {
    const auto read = recording_.documentBytes(0);
    const auto* error = std::get_if<FileError>(&read);
    return error == nullptr ? "there is one" : error->message;
  }

  RecordingFolder folder_;
  Recording recording_;
};

TEST_F(RecordingDocument, IsTheFilesBytesVerbatim) {
  const std::string bytes("\0<x>\r\n\xff\0", 8);
  folder_.write("a.plist", bytes);
  EXPECT_EQ(document(), base::Bytes(bytes.begin(), bytes.end()));
}

TEST_F(RecordingDocument, MayBeLong) {
  folder_.write("a.plist", std::string(300'001, 'x'));
  EXPECT_EQ(document(), base::Bytes(300'001, 'x'));
}

TEST_F(RecordingDocument, HasNoBytesWhenTheFileIsEmpty) {
  folder_.write("a.plist", "");
  EXPECT_EQ(document(), base::Bytes{});
}

TEST_F(RecordingDocument, IsAnErrorWhenTheFileHasGoneMeanwhile) {
  EXPECT_EQ(whyThereIsNone(), "No such file or directory");
}

TEST_F(RecordingDocument, IsAnErrorWhenTheFileHasGrownTooLarge) {
  folder_.write("a.plist", "x");
  std::filesystem::resize_file(folder_.pathOf("a.plist"), 67'108'865);
  EXPECT_EQ(whyThereIsNone(), "Larger than 67108864 bytes");
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
