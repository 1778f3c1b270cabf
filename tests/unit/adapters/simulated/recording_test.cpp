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

std::array<std::uint8_t, 32> padded(std::initializer_list<std::uint8_t> bytes) {
  std::array<std::uint8_t, 32> all{};
  std::copy(bytes.begin(), bytes.end(), all.begin());
  return all;
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

Recording withSmc() {
  Recording recording = withSteps(2);
  recording.smc.keys = {{"Te05", "flt ", 4, padded({1, 2}), false, false},
                        {"Te05", "flt ", 4, padded({9}), false, false},
                        {"Te0L", "flt ", 4, std::nullopt, false, false}};
  recording.smc.keyCount = 0x01020304;
  recording.steps[1].smc = {{"Te05", std::nullopt}, {"Te0L", padded({7})}};
  return recording;
}

TEST(RecordedSmcBytes, AreTheKeysOwnUnlessTheStepChangesThem) {
  EXPECT_EQ(withSmc().smcBytes(0, "Te05"), padded({1, 2}));
  EXPECT_EQ(withSmc().smcBytes(0, "Te0L"), std::nullopt);
}

TEST(RecordedSmcBytes, ChangeForTheirStepOnly) {
  EXPECT_EQ(withSmc().smcBytes(1, "Te05"), std::nullopt);
  EXPECT_EQ(withSmc().smcBytes(1, "Te0L"), padded({7}));
}

TEST(RecordedSmcBytes, AreAbsentForAKeyThatIsNotListed) {
  EXPECT_EQ(withSmc().smcBytes(0, "Te99"), std::nullopt);
}

TEST(RecordedSmcBytes, OfTheKeyCountComeMostSignificantFirst) {
  EXPECT_EQ(withSmc().smcBytes(0, "#KEY"), padded({1, 2, 3, 4}));
}

TEST(RecordedSmcBytes, OfTheKeyCountFailWhenTheCountIsAbsent) {
  Recording recording = withSmc();
  recording.smc.keyCount.reset();
  recording.smc.keys.push_back({"#KEY", "ui32", 4, padded({5}), false, false});
  EXPECT_EQ(recording.smcBytes(0, "#KEY"), std::nullopt);
}

}  // namespace
}  // namespace pallimo::adapters::simulated
