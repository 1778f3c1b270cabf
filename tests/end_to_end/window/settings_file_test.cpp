// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <QScreen>
#include <fstream>

#include "end_to_end/window/window_app.h"
#include "ui/widgets/settings/choice_box.h"

namespace pallimo::end_to_end {
namespace {

/// The file of the settings, as a disk, another program or an impatient user may leave it.
class SettingsFile : public WindowApp {
 protected:
  fs::path file() const { return folder.settingsFile(); }
  void write(const std::string& text) const {
    std::ofstream(file(), std::ios::binary | std::ios::trunc) << text;
  }
  bool showsUnit(const std::string& unit) const {
    return soon([&] { return panel(kTemperature).title.labelRight == unit; });
  }
  /// A user changes a setting, which the panels show at once.
  void turnFahrenheit() const {
    openSettings();
    ASSERT_TRUE(goByKeysTo(settings().general().temperature()));
    press(Qt::Key_Down);
    ASSERT_TRUE(showsUnit("℉"));
    press(Qt::Key_Escape);
  }
  void expectToGoOn() const {
    turnFahrenheit();
    EXPECT_TRUE(samples(2));
  }
  void expectUnitInNextRun(const std::string& unit) {
    restartApp();
    ASSERT_TRUE(becomesLive());
    EXPECT_TRUE(showsUnit(unit));
  }
};

TEST_F(SettingsFile, ThatIsDamagedCountsAsNone) {
  write(std::string("\0\xff[[[\n=%zz\n[General\ntemperatureUnit", 36));
  startLive();
  EXPECT_TRUE(showsUnit("℃"));
  expectToGoOn();
  expectUnitInNextRun("℉");
}

TEST_F(SettingsFile, WithOddValuesIsReadAsFarAsItGoes) {
  write(
      "[General]\ntemperatureUnit=warm\ngpuFrequency=perhaps\nshowEPUtilization=true\n"
      "mainWindowPlace=somewhere\npathFolderLocation=1, 2, 3\n");
  startLive();
  EXPECT_TRUE(showsUnit("℃"));
  EXPECT_EQ(panel(kUtilization).columns.at(0).values.size(), 2u);
  expectToGoOn();
}

TEST_F(SettingsFile, ThatIsReadOnlyStopsNothing) {
  write("[General]\nshowEPUtilization=true\n");
  fs::permissions(file(), fs::perms::owner_read);
  startLive();
  EXPECT_EQ(panel(kUtilization).columns.at(0).values.size(), 2u);
  expectToGoOn();
}

TEST_F(SettingsFile, ThatCannotBeWrittenByAnyoneStopsNothing) {
  fs::create_directory(file());
  startLive();
  expectToGoOn();
  restartApp();
  EXPECT_TRUE(becomesLive());
}

TEST_F(SettingsFile, EditedByHandWhileTheAppRunsKeepsBothChanges) {
  startLive();
  write("[General]\nshowEPUtilization=true\n");
  EXPECT_TRUE(samples(2));
  expectToGoOn();
  expectUnitInNextRun("℉");
  EXPECT_EQ(panel(kUtilization).columns.at(0).values.size(), 2u);
}

TEST_F(SettingsFile, SpoiltByHandWhileTheAppRunsIsMadeAnew) {
  startLive();
  write("{\"temperatureUnit\": \"warm\"}\n\xff\xfe");
  expectToGoOn();
  expectUnitInNextRun("℉");
}

TEST_F(SettingsFile, RemovedWhileTheAppRunsIsMadeAnew) {
  startLive();
  turnFahrenheit();
  ASSERT_TRUE(soon([this] { return fs::exists(file()); }));
  fs::remove(file());
  EXPECT_TRUE(samples(2));
  openSettings();
  ASSERT_TRUE(goByKeysTo(settings().general().temperature()));
  press(Qt::Key_Up);
  ASSERT_TRUE(showsUnit("℃"));
  expectUnitInNextRun("℃");
}

/// Where the window stands, from one run to the next.
class Place : public WindowApp {
 protected:
  /// Takes hold of the window at that point and moves it.
  void drag(const QPoint& grip, const QPoint& way) const {
    QWindow* const handle = window().windowHandle();
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, grip);
    QTest::mouseMove(handle, grip + way);
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, grip);
    widgets::settle();
  }
};

TEST_F(Place, IsWhereTheHeaderWasDraggedTo) {
  startLive();
  const QPoint before = window().pos();
  drag({100, 30}, {120, 90});
  EXPECT_EQ(window().pos(), before + QPoint(120, 90));
}

TEST_F(Place, IsKeptByTheNextRun) {
  startApp();
  drag({100, 30}, {120, 90});
  const QPoint place = window().pos();
  restartApp();
  EXPECT_EQ(window().pos(), place);
}

TEST_F(Place, IsKeptThroughHidingToo) {
  startApp();
  drag({100, 30}, {120, 90});
  const QPoint place = window().pos();
  window().hide();
  window().show();
  EXPECT_EQ(window().pos(), place);
}

TEST_F(Place, BeyondTheScreensIsBroughtBack) {
  startApp();
  window().move(-5000, -5000);
  widgets::settle();
  restartApp();
  EXPECT_TRUE(QGuiApplication::primaryScreen()->geometry().contains(window().geometry().topLeft()));
}

}  // namespace
}  // namespace pallimo::end_to_end
