// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "updates/sparkle_updater.h"

#include <gtest/gtest.h>

#include "fakes/fake_software_updater.h"
#include "fakes/recording_lines.h"

namespace pallimo::updates {
namespace {

using Lines = std::vector<std::string>;

class SparkleUpdaterTest : public testing::Test {
 protected:
  std::shared_ptr<SparkleUpdater> create() { return SparkleUpdater::create({updater_, console_}); }

  fakes::FakeSoftwareUpdater updater_;
  fakes::RecordingConsole console_;
};

TEST_F(SparkleUpdaterTest, StartsNothingByBeingCreated) {
  const auto sparkle = create();
  EXPECT_TRUE(updater_.calls.empty());
}

TEST_F(SparkleUpdaterTest, StartsTheUpdaterAndChecksWhenAsked) {
  create()->checkForUpdates();
  EXPECT_EQ(updater_.calls, (Lines{"start", "checkForUpdates"}));
}

TEST_F(SparkleUpdaterTest, WritesNothingWhenTheUpdaterStarts) {
  create()->checkForUpdates();
  EXPECT_TRUE(console_.lines().empty());
}

TEST_F(SparkleUpdaterTest, StartsAgainForEachCheck) {
  const auto sparkle = create();
  sparkle->checkForUpdates();
  sparkle->checkForUpdates();
  EXPECT_EQ(updater_.calls, (Lines{"start", "checkForUpdates", "start", "checkForUpdates"}));
}

TEST_F(SparkleUpdaterTest, DoesNotCheckWhenTheUpdaterDoesNotStart) {
  updater_.startError = "no feed";
  create()->checkForUpdates();
  EXPECT_EQ(updater_.calls, Lines{"start"});
}

TEST_F(SparkleUpdaterTest, WritesWhyTheUpdaterDoesNotStart) {
  updater_.startError = "no feed";
  create()->checkForUpdates();
  EXPECT_EQ(console_.lines(), Lines{"error no feed"});
}

TEST_F(SparkleUpdaterTest, WritesAnErrorWithoutADescription) {
  updater_.startError = "";
  create()->checkForUpdates();
  EXPECT_EQ(updater_.calls, Lines{"start"});
  EXPECT_EQ(console_.lines(), Lines{"error "});
}

TEST_F(SparkleUpdaterTest, ChecksWhenALaterStartSucceeds) {
  const auto sparkle = create();
  updater_.startError = "no feed";
  sparkle->checkForUpdates();
  updater_.startError.reset();
  sparkle->checkForUpdates();
  EXPECT_EQ(updater_.calls, (Lines{"start", "start", "checkForUpdates"}));
}

}  // namespace
}  // namespace pallimo::updates
