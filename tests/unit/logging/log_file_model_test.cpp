// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_model.h"

#include <limits>

#include "logging/log_file_data.h"
#include "unit/logging/log_file_model_fixture.h"

namespace pallimo::logging {
namespace {

using namespace std::chrono_literals;
using Fixture = tests::LogFileModelFixture;
using Texts = Fixture::Texts;

constexpr const char* kStarted =
    "Logging started: The log file will be written when logging is stopped.";

std::string ended(const std::string& path) { return "Logging ended: Saved at: " + path; }

TEST(LogFileModel, IsOffAtFirst) {
  const Fixture f;
  EXPECT_FALSE(f.model->isLogEnabled());
  EXPECT_EQ(f.model->lastTimeStamp(), std::nullopt);
  EXPECT_EQ(f.model->filenameToUseForSaving(), std::nullopt);
  EXPECT_EQ(f.model->folderUseForSaving(), std::nullopt);
}

TEST(LogFileModel, IsNeverStored) {
  Fixture f;
  int changes = 0;
  const auto subscription = f.defaults.observeChanges([&changes] { ++changes; });
  f.start();
  EXPECT_FALSE(f.makeModel()->isLogEnabled());
  f.finish();
  EXPECT_EQ(changes, 0);
}

TEST(LogFileModel, AsksForNoticesWhenItIsMade) {
  const Fixture f;
  EXPECT_EQ(f.notifications.calls(), (Texts{"setDelegate", "requestAuthorization 6"}));
}

TEST(LogFileModel, SwitchingPublishesOnce) {
  Fixture f;
  std::vector<bool> seen;
  const auto subscription =
      f.model->observe([&f, &seen] { seen.push_back(f.model->isLogEnabled()); });
  f.start();
  EXPECT_EQ(seen, (std::vector<bool>{true}));
  f.finish();
  EXPECT_EQ(seen, (std::vector<bool>{true, false}));
}

TEST(LogFileModel, SwitchingToTheSameValueDoesNothing) {
  Fixture f;
  int publications = 0;
  const auto subscription = f.model->observe([&publications] { ++publications; });
  f.stop();
  EXPECT_EQ(publications, 0);
  EXPECT_EQ(f.backgroundQueue.queuedTasks(), 0u);
  f.start();
  f.append(1);
  f.clock.advance(5s);
  f.start();
  EXPECT_EQ(publications, 1);
  EXPECT_EQ(f.notifications.texts(), Texts{kStarted});
  f.finish();
  EXPECT_EQ(f.powersIn(Fixture::kFile), Texts{"1.000"});
}

TEST(LogFileModel, SwitchingOnPublishesBeforeItTellsTheUser) {
  Fixture f;
  Texts toldAtPublication{"none seen"};
  const auto subscription = f.model->observe([&] { toldAtPublication = f.notifications.texts(); });
  f.start();
  EXPECT_EQ(toldAtPublication, Texts{});
  EXPECT_EQ(f.notifications.texts(), Texts{kStarted});
}

TEST(LogFileModel, SwitchingOffPublishesBeforeItWrites) {
  Fixture f;
  f.start();
  std::size_t queuedAtPublication = 99;
  const auto subscription =
      f.model->observe([&] { queuedAtPublication = f.backgroundQueue.queuedTasks(); });
  f.stop();
  EXPECT_EQ(queuedAtPublication, 0u);
  EXPECT_EQ(f.backgroundQueue.queuedTasks(), 1u);
}

TEST(LogFileModel, AnObserverMaySwitchBack) {
  Fixture f;
  const auto subscription = f.model->observe([&f] { f.model->setLogEnabled(false); });
  f.start();
  EXPECT_FALSE(f.model->isLogEnabled());
  f.settle();
  EXPECT_EQ(f.paths(), Texts{Fixture::kFile});
  EXPECT_EQ(f.notifications.texts(), (Texts{kStarted, ended(Fixture::kFile)}));
}

TEST(LogFileModel, TheFileIsNamedWhenLoggingStarts) {
  Fixture f;
  f.start();
  f.clock.advance(1h);
  f.append();
  EXPECT_EQ(f.model->filenameToUseForSaving(), "PwrData 2024-03-05 at 14.02.33");
  f.finish();
  EXPECT_EQ(f.paths(), Texts{Fixture::kFile});
}

TEST(LogFileModel, TheNameStaysUntilTheUserIsTold) {
  Fixture f;
  f.start();
  f.stop();
  f.backgroundQueue.run();
  EXPECT_EQ(f.model->filenameToUseForSaving(), "PwrData 2024-03-05 at 14.02.33");
  f.mainQueue.run();
  EXPECT_EQ(f.model->filenameToUseForSaving(), std::nullopt);
}

TEST(LogFileModel, TheTimeStampIsThatOfTheFirstRowUntilTheFileIsWritten) {
  Fixture f;
  f.start();
  EXPECT_EQ(f.model->lastTimeStamp(), std::nullopt);
  f.clock.advance(2s);
  f.append();
  f.clock.advance(1s);
  f.append();
  EXPECT_DOUBLE_EQ(f.model->lastTimeStamp().value(), 1'709'647'355.045);
  f.stop();
  EXPECT_TRUE(f.model->lastTimeStamp().has_value());
  f.backgroundQueue.run();
  EXPECT_EQ(f.model->lastTimeStamp(), std::nullopt);
}

TEST(LogFileModel, ElapsedTimeCountsFromTheFirstRowNotFromTheSwitch) {
  Fixture f;
  f.start();
  f.clock.advance(10s);
  f.append();
  f.clock.advance(1003ms);
  f.append();
  f.finish();
  EXPECT_EQ(f.read(Fixture::kFile).column(1), (Texts{"0.000", "1.003"}));
}

TEST(LogFileModel, TheNextLogCountsFromItsOwnFirstRow) {
  Fixture f;
  f.log({1});
  f.clock.advance(60s);
  f.log({2});
  const auto second = "/home/ada/Desktop/PwrData 2024-03-05 at 14.03.33.csv";
  EXPECT_EQ(f.read(second).column(1), Texts{"0.000"});
}

TEST(LogFileModel, ALogWithoutRowsIsTheHeaderAlone) {
  Fixture f;
  f.start();
  f.finish();
  EXPECT_EQ(f.files.files().at(Fixture::kFile), std::string(kCsvHeader) + "\n");
}

TEST(LogFileModel, ARowWhileLoggingIsOffIsNotKept) {
  Fixture f;
  f.append(1);
  f.start();
  f.append(2);
  f.stop();
  f.append(3);
  f.settle();
  f.append(4);
  EXPECT_EQ(f.powersIn(Fixture::kFile), Texts{"2.000"});
  EXPECT_EQ(f.model->lastTimeStamp(), std::nullopt);
}

TEST(LogFileModel, RowsStandInTheOrderInWhichTheyCame) {
  Fixture f;
  f.log({3, 1, 2});
  EXPECT_EQ(f.powersIn(Fixture::kFile), (Texts{"3.000", "1.000", "2.000"}));
}

TEST(LogFileModel, ARowIsWrittenInTheLogsFormats) {
  Fixture f;
  f.start();
  LogRow row;
  row.time = f.clock.now();
  row.cpuECoreFrequency = 1.23456 * 1000;
  row.cpuUtilization = 0.5 * 100;
  row.gpuAvgTmp = std::numeric_limits<double>::quiet_NaN();
  f.model->appendRow(row);
  f.finish();
  const auto log = f.read(Fixture::kFile);
  EXPECT_EQ(log.cell(0, 0), "14:02:33.045");
  EXPECT_EQ(log.cell(0, 7), "1235");
  EXPECT_EQ(log.cell(0, 13), "nan");
  EXPECT_EQ(log.cell(0, 14), "50.000");
}

TEST(LogFileModel, ARowKeepsTheTimeOfDayOfTheZoneInWhichItWasAppended) {
  Fixture f;
  f.start();
  f.append();
  {
    const tests::ZoneScope journey("IST-5:30");
    f.append();
  }
  f.finish();
  EXPECT_EQ(f.read(Fixture::kFile).column(0), (Texts{"14:02:33.045", "19:32:33.045"}));
}

TEST(LogFileModel, NothingIsWrittenWhileLoggingIsOn) {
  Fixture f;
  f.start();
  for (int i = 0; i < 3000; ++i) f.append();
  f.settle();
  EXPECT_EQ(f.files.writes(), Texts{});
}

TEST(LogFileModel, AProgramThatEndsWhileLoggingIsOnWritesNothing) {
  Fixture f;
  f.start();
  f.append();
  f.model.reset();
  f.settle();
  EXPECT_EQ(f.files.writes(), Texts{});
  EXPECT_EQ(f.notifications.texts(), Texts{kStarted});
}

TEST(LogFileModel, ALogThatWasStoppedIsWrittenWhoeverStillHoldsTheModel) {
  Fixture f;
  f.start();
  f.append(7);
  f.stop();
  f.model.reset();
  f.settle();
  EXPECT_EQ(f.powersIn(Fixture::kFile), Texts{"7.000"});
  EXPECT_EQ(f.notifications.texts(), (Texts{kStarted, ended(Fixture::kFile)}));
}

TEST(LogFileModel, StoppingDoesNotWaitForTheFile) {
  Fixture f;
  f.start();
  f.stop();
  EXPECT_FALSE(f.model->isLogEnabled());
  EXPECT_EQ(f.files.writes(), Texts{});
  f.backgroundQueue.run();
  EXPECT_EQ(f.files.writes(), Texts{Fixture::kFile});
}

TEST(LogFileModel, TheUserLearnsThePathFromTheMainQueueWhenTheFileIsWritten) {
  Fixture f;
  f.start();
  f.stop();
  f.backgroundQueue.run();
  EXPECT_EQ(f.notifications.texts(), Texts{kStarted});
  f.mainQueue.run();
  EXPECT_EQ(f.notifications.texts(), (Texts{kStarted, ended(Fixture::kFile)}));
}

TEST(LogFileModel, AFileThatIsWrittenLeavesTheConsoleEmpty) {
  Fixture f;
  f.log({1});
  EXPECT_EQ(f.console.lines(), Texts{});
}

TEST(LogFileModel, LogsAllTheSameWhenNoticesAreForbidden) {
  Fixture f;
  f.notifications.answer(false);
  f.log({1});
  EXPECT_EQ(f.powersIn(Fixture::kFile), Texts{"1.000"});
}

TEST(LogFileModel, AFailureIsWrittenToTheConsole) {
  Fixture f;
  f.files.setFailure("the folder is gone");
  f.log({1});
  EXPECT_EQ(f.console.lines(), Texts{"error the folder is gone"});
  EXPECT_EQ(f.paths(), Texts{});
}

TEST(LogFileModel, TheUserLearnsThePathThatFailed) {
  Fixture f;
  f.files.setFailure("the folder is gone");
  f.log({1});
  EXPECT_EQ(f.notifications.texts(), (Texts{kStarted, ended(Fixture::kFile)}));
  EXPECT_EQ(f.model->filenameToUseForSaving(), std::nullopt);
  EXPECT_EQ(f.model->lastTimeStamp(), std::nullopt);
}

TEST(LogFileModel, TheRowsOfAFailedLogAreGone) {
  Fixture f;
  f.files.setFailure("the folder is gone");
  f.log({1});
  f.files.setFailure(std::nullopt);
  f.log({2});
  EXPECT_EQ(f.powersIn(Fixture::kFile), Texts{"2.000"});
}

TEST(LogFileModel, LogsOfDifferentSecondsNeverOverwriteEachOther) {
  Fixture f;
  f.log({1});
  f.clock.advance(1s);
  f.log({2});
  EXPECT_EQ(f.paths(),
            (Texts{Fixture::kFile, "/home/ada/Desktop/PwrData 2024-03-05 at 14.02.34.csv"}));
}

TEST(LogFileModel, OfTwoLogsOfOneSecondTheLaterOneStays) {
  Fixture f;
  f.log({1});
  f.clock.advance(954ms);
  f.log({2});
  EXPECT_EQ(f.paths(), Texts{Fixture::kFile});
  EXPECT_EQ(f.powersIn(Fixture::kFile), Texts{"2.000"});
  EXPECT_EQ(f.notifications.texts(),
            (Texts{kStarted, ended(Fixture::kFile), kStarted, ended(Fixture::kFile)}));
}

}  // namespace
}  // namespace pallimo::logging
