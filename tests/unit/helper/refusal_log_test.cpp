// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/refusal_log.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/recording_lines.h"

namespace pallimo::helper {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kBadPeriod =
    "request refused: the sampling period is not within 1 to 3600000 ms";
constexpr const char* kTooMany = "request refused: 64 runs are under way";
constexpr const char* kWaiting = "request refused: too many documents wait for an earlier run";

class RefusalLogTest : public ::testing::Test {
 protected:
  void refuse(Refusal refusal, int count = 1) {
    for (int i = 0; i < count; ++i) refusals->add(refusal);
  }
  static std::string times(const std::string& line, const std::string& count) {
    return line + " (" + count + " times)";
  }

  fakes::RecordingSystemLog log;
  std::unique_ptr<RefusalLog> refusals = std::make_unique<RefusalLog>(log);
};

TEST_F(RefusalLogTest, TheFirstOfASeriesIsWrittenAtOnce) {
  refuse(Refusal::badPeriod);
  EXPECT_EQ(log.lines(), Lines{kBadPeriod});
}

TEST_F(RefusalLogTest, EveryReasonHasItsLine) {
  refuse(Refusal::badPeriod);
  refuse(Refusal::tooManyRuns);
  refuse(Refusal::tooManyWaitingDocuments);
  EXPECT_EQ(log.lines(), (Lines{kBadPeriod, kTooMany, kWaiting}));
}

TEST_F(RefusalLogTest, TheNextOnesAreCountedInOneLineAtTheSeriesEnd) {
  refuse(Refusal::tooManyRuns, 136);
  EXPECT_EQ(log.lines(), Lines{kTooMany});
  refusals->endSeries();
  EXPECT_EQ(log.lines(), (Lines{kTooMany, times(kTooMany, "136")}));
}

TEST_F(RefusalLogTest, ASingleOneIsNotCountedAgain) {
  refuse(Refusal::tooManyRuns);
  refusals->endSeries();
  EXPECT_EQ(log.lines(), Lines{kTooMany});
}

TEST_F(RefusalLogTest, EveryTenThousandthHasALine) {
  refuse(Refusal::badPeriod, 25'000);
  EXPECT_EQ(log.lines(),
            (Lines{kBadPeriod, times(kBadPeriod, "10,000"), times(kBadPeriod, "20,000")}));
}

TEST_F(RefusalLogTest, TheEndCountsTheWholeSeries) {
  refuse(Refusal::badPeriod, 12'345);
  refusals->endSeries();
  EXPECT_EQ(log.lines().back(), times(kBadPeriod, "12,345"));
}

TEST_F(RefusalLogTest, AMillionIsGroupedTwice) {
  refuse(Refusal::badPeriod, 1'000'001);
  refusals->endSeries();
  EXPECT_EQ(log.lines().back(), times(kBadPeriod, "1,000,001"));
}

TEST_F(RefusalLogTest, ACountThatWasJustWrittenIsNotRepeated) {
  refuse(Refusal::badPeriod, 10'000);
  refusals->endSeries();
  EXPECT_EQ(log.lines(), (Lines{kBadPeriod, times(kBadPeriod, "10,000")}));
}

TEST_F(RefusalLogTest, TheNextSeriesBeginsAnew) {
  refuse(Refusal::badPeriod, 3);
  refusals->endSeries();
  refuse(Refusal::badPeriod, 2);
  refusals->endSeries();
  EXPECT_EQ(log.lines(),
            (Lines{kBadPeriod, times(kBadPeriod, "3"), kBadPeriod, times(kBadPeriod, "2")}));
}

TEST_F(RefusalLogTest, AlternatingReasonsFillNoLog) {
  for (int i = 0; i < 5'000; ++i) {
    refuse(Refusal::badPeriod);
    refuse(Refusal::tooManyRuns);
  }
  EXPECT_EQ(log.lines(), (Lines{kBadPeriod, kTooMany}));
}

TEST_F(RefusalLogTest, TheHelpersEndEndsTheSeries) {
  refuse(Refusal::tooManyRuns, 2);
  refusals.reset();
  EXPECT_EQ(log.lines(), (Lines{kTooMany, times(kTooMany, "2")}));
}

}  // namespace
}  // namespace pallimo::helper
