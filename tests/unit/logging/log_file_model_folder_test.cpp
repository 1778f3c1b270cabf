// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "logging/log_file_model.h"

#include <utility>

#include "unit/logging/log_file_model_fixture.h"

namespace pallimo::logging {
namespace {

using Fixture = tests::LogFileModelFixture;
using Texts = Fixture::Texts;

constexpr const char* kName = "PwrData 2024-03-05 at 14.02.33.csv";

/// Counts what a model publishes.
class Publications {
 public:
  explicit Publications(LogFileModel& model) : subscription_(model.observe([this] { ++count_; })) {}
  int take() { return std::exchange(count_, 0); }

 private:
  int count_ = 0;
  base::Subscription subscription_;
};

/// Where a log goes after the settings say `folder`.
std::string fileFor(const std::string& folder) {
  Fixture f;
  f.defaults.setText(Fixture::kFolder, folder);
  f.log({});
  return f.paths().at(0);
}

std::string endedNotice(const Fixture& f) { return f.notifications.added().back().subtitle; }

TEST(LogFileModelFolder, IsReadWhenTheModelIsMade) {
  Fixture f;
  f.defaults.setText(Fixture::kFolder, "/logs");
  EXPECT_EQ(f.makeModel()->folderUseForSaving(), "/logs");
}

TEST(LogFileModelFolder, StaysAbsentWithoutTheSetting) {
  Fixture f;
  Publications publications(*f.model);
  f.defaults.setText("another setting", "1");
  EXPECT_EQ(f.model->folderUseForSaving(), std::nullopt);
  EXPECT_EQ(publications.take(), 0);
}

TEST(LogFileModelFolder, AValueThatIsNoTextIsReadAsOne) {
  Fixture f;
  f.defaults.setInteger(Fixture::kFolder, 5);
  EXPECT_EQ(f.model->folderUseForSaving(), "/5");
}

TEST(LogFileModelFolder, FollowsTheSettingAndPublishes) {
  Fixture f;
  Publications publications(*f.model);
  f.defaults.setText(Fixture::kFolder, "/logs");
  EXPECT_EQ(f.model->folderUseForSaving(), "/logs");
  EXPECT_EQ(publications.take(), 1);
  f.defaults.setText(Fixture::kFolder, "/other");
  EXPECT_EQ(f.model->folderUseForSaving(), "/other");
  EXPECT_EQ(publications.take(), 1);
}

TEST(LogFileModelFolder, TheSameTextIsNoChange) {
  Fixture f;
  f.defaults.setText(Fixture::kFolder, "/logs");
  Publications publications(*f.model);
  f.defaults.setText(Fixture::kFolder, "/logs");
  f.defaults.setText("another setting", "1");
  EXPECT_EQ(publications.take(), 0);
}

TEST(LogFileModelFolder, BecomesAbsentWithTheSettingAndPublishesOnce) {
  Fixture f;
  f.defaults.setText(Fixture::kFolder, "/logs");
  Publications publications(*f.model);
  f.defaults.remove(Fixture::kFolder);
  EXPECT_EQ(f.model->folderUseForSaving(), std::nullopt);
  EXPECT_EQ(publications.take(), 1);
  f.defaults.remove(Fixture::kFolder);
  EXPECT_EQ(publications.take(), 0);
}

TEST(LogFileModelFolder, AnObserverFindsTheNewFolder) {
  Fixture f;
  std::optional<std::string> seen;
  const auto subscription = f.model->observe([&] { seen = f.model->folderUseForSaving(); });
  f.defaults.setText(Fixture::kFolder, "/logs");
  EXPECT_EQ(seen, "/logs");
}

TEST(LogFileModelFolder, TheTextIsComparedExactly) {
  Fixture f;
  f.defaults.setText(Fixture::kFolder, "/Logs");
  Publications publications(*f.model);
  f.defaults.setText(Fixture::kFolder, "/logs");
  EXPECT_EQ(publications.take(), 1);
  EXPECT_EQ(f.model->folderUseForSaving(), "/logs");
}

TEST(LogFileModelFolder, ATextWithASlashAtItsEndIsAnnouncedAtEveryChange) {
  Fixture f;
  Publications publications(*f.model);
  f.defaults.setText(Fixture::kFolder, "/logs/");
  EXPECT_EQ(f.model->folderUseForSaving(), "/logs");
  f.defaults.setText("another setting", "1");
  EXPECT_EQ(publications.take(), 2);
}

TEST(LogFileModelFolder, AnEmptyTextIsTheFolderInWhichTheSystemStartsApps) {
  Fixture f;
  Publications publications(*f.model);
  f.defaults.setText(Fixture::kFolder, "");
  EXPECT_EQ(f.model->folderUseForSaving(), "/");
  f.defaults.setText("another setting", "1");
  EXPECT_EQ(publications.take(), 2);
}

TEST(LogFileModelFolder, ARelativePathBeginsThereToo) {
  Fixture f;
  f.defaults.setText(Fixture::kFolder, "logs/power");
  EXPECT_EQ(f.model->folderUseForSaving(), "/logs/power");
}

TEST(LogFileModelFolder, TheFileGoesToTheDesktopUnlessTheSettingsSayOtherwise) {
  Fixture f;
  f.log({});
  EXPECT_EQ(f.paths(), Texts{"/home/ada/Desktop/" + std::string(kName)});
}

TEST(LogFileModelFolder, TheFileGoesWhereTheSettingsSay) {
  EXPECT_EQ(fileFor("/logs"), "/logs/" + std::string(kName));
  EXPECT_EQ(fileFor("/logs//"), "/logs/" + std::string(kName));
  EXPECT_EQ(fileFor("/"), "/" + std::string(kName));
  EXPECT_EQ(fileFor(""), "/" + std::string(kName));
}

TEST(LogFileModelFolder, AFoldersNameIsTakenAsItIs) {
  for (const std::string folder :
       {"/My Logs", "/it's \"here\"", "/two\nlines", "/Protokoll für 電力", "/a, b", "/100%20"}) {
    EXPECT_EQ(fileFor(folder), folder + "/" + kName);
  }
}

TEST(LogFileModelFolder, TheNoticeNamesTheFileAsItIs) {
  Fixture f;
  f.defaults.setText(Fixture::kFolder, "/für \"mich\"");
  f.log({});
  EXPECT_EQ(endedNotice(f), "Saved at: /für \"mich\"/" + std::string(kName));
}

TEST(LogFileModelFolder, ASettingThatIsRemovedSendsTheNextFileToTheDesktop) {
  Fixture f;
  f.defaults.setText(Fixture::kFolder, "/logs");
  f.start();
  f.defaults.remove(Fixture::kFolder);
  f.finish();
  EXPECT_EQ(f.paths(), Texts{"/home/ada/Desktop/" + std::string(kName)});
}

TEST(LogFileModelFolder, IsTheOneThatIsSetWhenTheFileIsWritten) {
  Fixture f;
  f.start();
  f.defaults.setText(Fixture::kFolder, "/first");
  f.stop();
  f.defaults.setText(Fixture::kFolder, "/second");
  f.settle();
  EXPECT_EQ(f.paths(), Texts{"/second/" + std::string(kName)});
}

TEST(LogFileModelFolder, TheNoticeNamesWhereTheFileIsWhateverIsSetMeanwhile) {
  Fixture f;
  f.start();
  f.stop();
  f.backgroundQueue.run();
  f.defaults.setText(Fixture::kFolder, "/later");
  f.mainQueue.run();
  EXPECT_EQ(endedNotice(f), "Saved at: /home/ada/Desktop/" + std::string(kName));
}

TEST(LogFileModelFolder, WithoutADesktopTheConsoleSaysWhyAndTheUserIsToldAllTheSame) {
  Fixture f;
  f.files.setDesktopFolder(std::nullopt);
  f.log({1});
  EXPECT_EQ(f.console.lines(), Texts{"error there is no desktop folder for " + std::string(kName)});
  EXPECT_EQ(endedNotice(f), "Saved at: " + std::string(kName));
  EXPECT_EQ(f.files.writes(), Texts{});
}

TEST(LogFileModelFolder, AChosenFolderNeedsNoDesktop) {
  Fixture f;
  f.files.setDesktopFolder(std::nullopt);
  f.defaults.setText(Fixture::kFolder, "/logs");
  f.log({1});
  EXPECT_EQ(f.paths(), Texts{"/logs/" + std::string(kName)});
}

TEST(LogFileModelFolder, IsNoLongerFollowedWithoutAModel) {
  Fixture f;
  const std::weak_ptr<LogFileModel> weak = f.model;
  f.model.reset();
  EXPECT_TRUE(weak.expired());
  f.defaults.setText(Fixture::kFolder, "/logs");
}

}  // namespace
}  // namespace pallimo::logging
