// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/powermetrics_runs.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <limits>

#include "fakes/fake_child_processes.h"
#include "fakes/recording_lines.h"

namespace pallimo::helper {
namespace {

using End = ports::ChildOutcome::End;
using Lines = std::vector<std::string>;

class PowermetricsRunsTest : public ::testing::Test {
 protected:
  std::unique_ptr<PowermetricsRun> start(double msSampling = 1000) {
    return runs.start(msSampling, false, 1, [this] { ++finished; });
  }

  /// The document of a run that ended so, or "(absent)".
  std::string documentAfter(ports::ChildOutcome outcome) {
    const auto run = start();
    children.finish(children.count() - 1, std::move(outcome));
    const auto document = run->takeDocument();
    return document ? std::string(document->begin(), document->end()) : "(absent)";
  }

  static base::Bytes bytes(const std::string& text) { return {text.begin(), text.end()}; }

  fakes::FakeChildProcesses children;
  fakes::RecordingSystemLog log;
  PowermetricsRuns runs{{children, log}, {"/usr/bin/powermetrics", true, nullptr}};
  int finished = 0;
};

TEST_F(PowermetricsRunsTest, StartOneProcessARun) {
  const auto first = start();
  const auto second = start();
  EXPECT_EQ(children.running(), 2U);
}

TEST_F(PowermetricsRunsTest, GiveTheDocumentThatWasPrinted) {
  EXPECT_EQ(documentAfter({End::exited, 0, bytes("<plist/>")}), "<plist/>");
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(PowermetricsRunsTest, TrimTheDocument) {
  EXPECT_EQ(documentAfter({End::exited, 0, {0, 'a', 0}}), "a");
}

TEST_F(PowermetricsRunsTest, SayOnceThatTheyAreFinished) {
  const auto run = start();
  EXPECT_FALSE(run->isFinished());
  children.print(0, "a");
  EXPECT_TRUE(run->isFinished());
  EXPECT_EQ(finished, 1);
}

TEST_F(PowermetricsRunsTest, GiveTheirDocumentOnce) {
  const auto run = start();
  children.print(0, "a");
  EXPECT_TRUE(run->takeDocument());
  EXPECT_FALSE(run->takeDocument());
}

TEST_F(PowermetricsRunsTest, GiveNoDocumentWhenTheToolFails) {
  EXPECT_EQ(documentAfter({End::exited, 1, bytes("<plist/>")}), "(absent)");
  EXPECT_EQ(log.lines(), Lines{"powermetrics ended with status 1"});
}

TEST_F(PowermetricsRunsTest, GiveNoDocumentWhenTheToolIsKilled) {
  EXPECT_EQ(documentAfter({End::signalled, 9, bytes("<plist/>")}), "(absent)");
  EXPECT_EQ(log.lines(), Lines{"powermetrics was ended by signal 9"});
}

TEST_F(PowermetricsRunsTest, GiveNoDocumentWhenNothingIsPrinted) {
  EXPECT_EQ(documentAfter({End::exited, 0, {}}), "(absent)");
  EXPECT_EQ(log.lines(), Lines{"powermetrics printed nothing"});
}

TEST_F(PowermetricsRunsTest, GiveNoDocumentWhenNulBytesAloneArePrinted) {
  EXPECT_EQ(documentAfter({End::exited, 0, {0, 0}}), "(absent)");
  EXPECT_EQ(log.lines(), Lines{"powermetrics printed nothing"});
}

TEST_F(PowermetricsRunsTest, GiveNoDocumentWhenTooMuchIsPrinted) {
  EXPECT_EQ(documentAfter({End::tooMuchOutput, 0, bytes("<plist/>")}), "(absent)");
  EXPECT_EQ(log.lines(), Lines{"powermetrics printed more than 16777216 bytes and was ended"});
}

TEST_F(PowermetricsRunsTest, GiveNoDocumentWhenTheToolTakesTooLong) {
  EXPECT_EQ(documentAfter({End::timedOut, 0, bytes("<plist/>")}), "(absent)");
  EXPECT_EQ(log.lines(), Lines{"powermetrics took too long and was ended"});
}

TEST_F(PowermetricsRunsTest, GiveNoDocumentWhenTheToolIsMissing) {
  EXPECT_EQ(documentAfter({End::notStarted, ENOENT, {}}), "(absent)");
  EXPECT_EQ(log.lines(), Lines{"powermetrics could not be started: No such file or directory"});
}

TEST_F(PowermetricsRunsTest, RefuseABadPeriodWithoutAProcess) {
  EXPECT_FALSE(start(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(children.count(), 0U);
  EXPECT_EQ(log.lines(),
            Lines{"request refused: the sampling period is not within 1 to 3600000 ms"});
}

TEST_F(PowermetricsRunsTest, TellOfASeriesOfRefusalsInTwoLines) {
  for (int i = 0; i < 3; ++i) start(0);
  const auto run = start();
  EXPECT_EQ(log.lines(),
            (Lines{"request refused: the sampling period is not within 1 to 3600000 ms",
                   "request refused: the sampling period is not within 1 to 3600000 ms "
                   "(3 times)"}));
}

TEST_F(PowermetricsRunsTest, AreEndedAtOnceWhenDestroyed) {
  auto run = start();
  run.reset();
  EXPECT_FALSE(children.isRunning(0));
  EXPECT_EQ(finished, 0);
}

TEST_F(PowermetricsRunsTest, MayBeDestroyedWhenTheyFinish) {
  std::unique_ptr<PowermetricsRun> run;
  run = runs.start(1000, false, 1, [&run] { run.reset(); });
  children.print(0, "a");
  EXPECT_FALSE(run);
}

class PowermetricsRunsLimitTest : public PowermetricsRunsTest {
 protected:
  PowermetricsRunsLimitTest() {
    for (int i = 0; i < 64; ++i) all.push_back(start());
  }
  std::vector<std::unique_ptr<PowermetricsRun>> all;
};

TEST_F(PowermetricsRunsLimitTest, SixtyFourMayBeUnderWay) { EXPECT_EQ(children.running(), 64U); }

TEST_F(PowermetricsRunsLimitTest, TheNextIsRefused) {
  EXPECT_FALSE(start());
  EXPECT_EQ(children.count(), 64U);
  EXPECT_EQ(log.lines(), Lines{"request refused: 64 runs are under way"});
}

TEST_F(PowermetricsRunsLimitTest, AFinishedRunMakesRoom) {
  children.print(10, "a");
  EXPECT_TRUE(start());
}

TEST_F(PowermetricsRunsLimitTest, AnEndedRunMakesRoom) {
  all[10].reset();
  EXPECT_TRUE(start());
}

TEST_F(PowermetricsRunsLimitTest, ARunMakesRoomOnlyOnce) {
  children.print(10, "a");
  all[10].reset();
  const auto first = start();
  EXPECT_FALSE(start());
}

TEST_F(PowermetricsRunsTest, AreRefusedWhileTooManyDocumentsWait) {
  std::vector<std::unique_ptr<PowermetricsRun>> waiting;
  for (std::size_t i = 0; i < 5; ++i) {
    waiting.push_back(start());
    children.finish(i, {End::exited, 0, base::Bytes(std::size_t{16} << 20, 'a')});
  }
  EXPECT_FALSE(start());
  EXPECT_EQ(log.lines(), Lines{"request refused: too many documents wait for an earlier run"});
  waiting[0]->takeDocument();
  EXPECT_TRUE(start());
}

TEST_F(PowermetricsRunsTest, ForgetDocumentsThatNobodyTook) {
  for (std::size_t i = 0; i < 5; ++i) {
    const auto run = start();
    children.finish(i, {End::exited, 0, base::Bytes(std::size_t{16} << 20, 'a')});
  }
  EXPECT_TRUE(start());
}

}  // namespace
}  // namespace pallimo::helper
