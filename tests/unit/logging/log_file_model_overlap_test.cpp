// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

// Logs that follow each other faster than they are written.

#include <set>
#include <string>
#include <utility>

#include "unit/logging/log_file_model_fixture.h"

namespace pallimo::logging {
namespace {

using namespace std::chrono_literals;
using Fixture = tests::LogFileModelFixture;
using Texts = Fixture::Texts;

constexpr const char* kFirst = Fixture::kFile;
constexpr const char* kSecond = "/home/ada/Desktop/PwrData 2024-03-05 at 14.02.34.csv";

/// A first log with the row 1, stopped, and a second one, a second later, with the row 2.
struct OverlapFixture : Fixture {
  OverlapFixture() {
    start();
    append(1);
    stop();
    clock.advance(1s);
    start();
    append(2);
  }
};

Texts endings(const Fixture& f) {
  Texts paths;
  for (const auto& each : f.notifications.added()) {
    if (each.title == "Logging ended") paths.push_back(each.subtitle);
  }
  return paths;
}

TEST(LogFileModelOverlap, ALogThatStartsBeforeTheOtherIsWrittenMixesNoRows) {
  OverlapFixture f;
  f.settle();
  f.append(3);
  f.finish();
  EXPECT_EQ(f.powersIn(kFirst), Texts{"1.000"});
  EXPECT_EQ(f.powersIn(kSecond), (Texts{"2.000", "3.000"}));
}

TEST(LogFileModelOverlap, EachNoticeNamesItsOwnFile) {
  OverlapFixture f;
  f.stop();
  f.settle();
  EXPECT_EQ(endings(f),
            (Texts{"Saved at: " + std::string(kFirst), "Saved at: " + std::string(kSecond)}));
}

TEST(LogFileModelOverlap, NoNoticeReplacesAnother) {
  Fixture f;
  for (int logs = 0; logs < 2; ++logs) {
    f.start();
    f.stop();
  }
  f.settle();
  std::set<std::string> identifiers;
  for (const auto& each : f.notifications.added()) identifiers.insert(each.identifier);
  EXPECT_EQ(f.notifications.added().size(), 4u);
  EXPECT_EQ(identifiers.size(), 4u);
}

TEST(LogFileModelOverlap, TheEndOfTheOlderLogTakesNothingFromTheNewerOne) {
  OverlapFixture f;
  f.settle();
  EXPECT_TRUE(f.model->isLogEnabled());
  EXPECT_EQ(f.model->filenameToUseForSaving(), "PwrData 2024-03-05 at 14.02.34");
  EXPECT_DOUBLE_EQ(f.model->lastTimeStamp().value(), 1'709'647'354.045);
}

TEST(LogFileModelOverlap, AnOlderLogThatFailsTakesNothingFromTheNewerOne) {
  OverlapFixture f;
  f.files.setFailure("no room");
  f.settle();
  f.files.setFailure(std::nullopt);
  f.finish();
  EXPECT_EQ(f.powersIn(kSecond), Texts{"2.000"});
}

TEST(LogFileModelOverlap, ANewLogBeginsWithoutATimeStamp) {
  Fixture f;
  f.start();
  f.append();
  f.stop();
  f.start();
  EXPECT_EQ(f.model->lastTimeStamp(), std::nullopt);
}

TEST(LogFileModelOverlap, FilesAreWrittenInTheOrderInWhichTheirLogsEnded) {
  OverlapFixture f;
  // While the first file is being written another thread gets to the second one's task.
  bool isFirst = true;
  f.files.setOnWrite([&](const std::string&) {
    if (!std::exchange(isFirst, false)) return;
    f.stop();
    f.backgroundQueue.run();
    EXPECT_EQ(f.files.writes(), Texts{});
  });
  f.settle();
  EXPECT_EQ(f.files.writes(), (Texts{kFirst, kSecond}));
  EXPECT_EQ(endings(f),
            (Texts{"Saved at: " + std::string(kFirst), "Saved at: " + std::string(kSecond)}));
}

TEST(LogFileModelOverlap, OfThreeLogsOfOneSecondTheLastOneStays) {
  Fixture f;
  for (const double power : {1.0, 2.0, 3.0}) {
    f.start();
    f.append(power);
    f.stop();
  }
  f.settle();
  EXPECT_EQ(f.powersIn(kFirst), Texts{"3.000"});
  EXPECT_EQ(endings(f).size(), 3u);
}

}  // namespace
}  // namespace pallimo::logging
