// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/settings_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <cstdlib>
#include <thread>

#include "ui/widgets/basics/colors.h"
#include "ui/widgets/windows/window_rules.h"
#include "unit/ui/widgets/panels/kept_picture.h"
#include "unit/ui/widgets/settings/settings_window_fixture.h"

namespace pallimo::ui::widgets {
namespace {

class SettingsWindowTest : public SettingsWindowFixture {
 protected:
  bool shows(SettingsTab tab) {
    const QWidget& general = window().general();
    const QWidget& extra = window().extra();
    return tab == SettingsTab::general ? general.isVisible() && !extra.isVisible()
                                       : extra.isVisible() && !general.isVisible();
  }

  static QStringList headingsOf(const QWidget& page) {
    QStringList texts;
    for (const auto* label : page.findChildren<QLabel*>()) {
      if (!label->text().isEmpty()) texts.append(label->text());
    }
    return texts;
  }
};

TEST_F(SettingsWindowTest, HasTheTabsGeneralAndExtraAndBeginsWithTheFirst) {
  shown();
  EXPECT_EQ(window().toolbar().tabButton(SettingsTab::general).text(), "General");
  EXPECT_EQ(window().toolbar().tabButton(SettingsTab::extra).text(), "Extra");
  EXPECT_LT(window().toolbar().tabButton(SettingsTab::general).x(),
            window().toolbar().tabButton(SettingsTab::extra).x());
  EXPECT_EQ(window().toolbar().selectedTab(), SettingsTab::general);
  EXPECT_TRUE(shows(SettingsTab::general));
}

TEST_F(SettingsWindowTest, DrawsASymbolOfItsOwnOnEachTab) {
  shown();
  QImage symbols[2];
  for (const auto tab : {SettingsTab::general, SettingsTab::extra}) {
    // Alike but for the symbol: neither chosen nor with the keyboard.
    window().toolbar().selectTab(tab == SettingsTab::general ? SettingsTab::extra
                                                             : SettingsTab::general);
    TabButton& button = window().toolbar().tabButton(tab);
    QImage& symbol = symbols[static_cast<int>(tab)];
    symbol = pictureOf(button).toImage().copy((button.width() - 20), 2, 40, 44);
    QImage blank = symbol;
    blank.fill(symbol.pixelColor(0, 0));
    EXPECT_NE(symbol, blank);
  }
  EXPECT_NE(symbols[0], symbols[1]);
}

/// By how much a tab's symbol differs from itself after a quarter turn, the average pixel of 255.
double turnChanges(TabButton& tab) {
  const QImage symbol = pictureOf(tab).toImage().copy(tab.width() - 18, 12, 36, 36);
  const QImage turned = symbol.transformed(QTransform().rotate(90));
  int difference = 0;
  for (int y = 0; y < 36; ++y) {
    for (int x = 0; x < 36; ++x) {
      difference +=
          std::abs(symbol.pixelColor(x, y).lightness() - turned.pixelColor(x, y).lightness());
    }
  }
  return difference / (36.0 * 36);
}

TEST_F(SettingsWindowTest, DrawsAGearForTheFirstTabAndRowsForTheSecond) {
  shown();
  EXPECT_LT(turnChanges(window().toolbar().tabButton(SettingsTab::general)), 3);
  EXPECT_GT(turnChanges(window().toolbar().tabButton(SettingsTab::extra)), 10);
}

TEST_F(SettingsWindowTest, ComesBackWhenItWasMinimised) {
  shown();
  window().showMinimized();
  ASSERT_TRUE(window().isMinimized());
  window().present();
  EXPECT_FALSE(window().isMinimized());
  EXPECT_TRUE(window().isVisible());
}

TEST_F(SettingsWindowTest, ShowsTheTabThatIsClicked) {
  shown();
  QTest::mouseClick(&window().toolbar().tabButton(SettingsTab::extra), Qt::LeftButton);
  EXPECT_EQ(window().toolbar().selectedTab(), SettingsTab::extra);
  EXPECT_TRUE(shows(SettingsTab::extra));
  QTest::mouseClick(&window().toolbar().tabButton(SettingsTab::extra), Qt::LeftButton);
  EXPECT_TRUE(shows(SettingsTab::extra));
  QTest::mouseClick(&window().toolbar().tabButton(SettingsTab::general), Qt::LeftButton);
  EXPECT_TRUE(shows(SettingsTab::general));
}

TEST_F(SettingsWindowTest, ArrowKeysChooseTheTab) {
  shown();
  auto& general = window().toolbar().tabButton(SettingsTab::general);
  auto& extra = window().toolbar().tabButton(SettingsTab::extra);
  general.setFocus();
  QTest::keyClick(&general, Qt::Key_Right);
  EXPECT_TRUE(shows(SettingsTab::extra));
  EXPECT_TRUE(extra.hasFocus());
  QTest::keyClick(&extra, Qt::Key_Right);
  EXPECT_TRUE(shows(SettingsTab::extra));
  QTest::keyClick(&extra, Qt::Key_Left);
  EXPECT_TRUE(shows(SettingsTab::general));
  QTest::keyClick(&general, Qt::Key_Left);
  EXPECT_TRUE(shows(SettingsTab::general));
}

TEST_F(SettingsWindowTest, KeepsTheTabWhileItIsHidden) {
  shownExtra();
  window().close();
  shown();
  EXPECT_TRUE(shows(SettingsTab::extra));
}

TEST_F(SettingsWindowTest, WritesItsHeadingsToTheLetter) {
  EXPECT_EQ(headingsOf(window().general()), QStringList({"Temperature:", "Log File location:"}));
  EXPECT_EQ(headingsOf(window().extra()), QStringList({"Utilization:", "Frequency:"}));
}

TEST_F(SettingsWindowTest, KeepsItsSize) {
  shown();
  const QSize before = window().size();
  QTest::mouseClick(&window().toolbar().tabButton(SettingsTab::extra), Qt::LeftButton);
  EXPECT_EQ(window().size(), before);
  EXPECT_EQ(window().minimumSize(), before);
  EXPECT_EQ(window().maximumSize(), before);
}

TEST_F(SettingsWindowTest, HasNoTitleBarAndNoZoom) {
  const WindowRules rules(framelessChrome().applyRules);
  shown();
  EXPECT_TRUE(window().windowFlags().testFlag(Qt::FramelessWindowHint));
  window().setWindowState(Qt::WindowFullScreen);
  settle();
  EXPECT_FALSE(window().isFullScreen());
}

TEST_F(SettingsWindowTest, ClosesByButtonAndByKeys) {
  shown();
  QTest::mouseClick(&window().toolbar().closeButton(), Qt::LeftButton);
  EXPECT_FALSE(window().isVisible());
  shown();
  QTest::keyClick(&window(), Qt::Key_Escape);
  EXPECT_FALSE(window().isVisible());
  shown();
  QTest::keyClick(&window(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(window().isVisible());
}

TEST_F(SettingsWindowTest, TabReachesEveryControlInReadingOrder) {
  shown();
  std::vector<QWidget*> reached;
  for (int i = 0; i < 5; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    reached.push_back(QApplication::focusWidget());
  }
  EXPECT_EQ(reached,
            (std::vector<QWidget*>{&window().toolbar().closeButton(),
                                   &window().toolbar().tabButton(SettingsTab::general),
                                   &window().general().temperature(), &window().general().select(),
                                   &window().toolbar().closeButton()}));
}

TEST_F(SettingsWindowTest, TabReachesEveryToggle) {
  shownExtra();
  window().toolbar().tabButton(SettingsTab::extra).setFocus();
  std::vector<QWidget*> reached;
  for (int i = 0; i < 3; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    reached.push_back(QApplication::focusWidget());
  }
  EXPECT_EQ(reached, (std::vector<QWidget*>{&toggle(settings_key::kGpuUtilization),
                                            &toggle(settings_key::kShowEPUtilization),
                                            &toggle(settings_key::kGpuFrequency)}));
}

TEST_F(SettingsWindowTest, ShowsWhereTheFocusIs) {
  shown();
  std::vector<QWidget*> controls = {
      &window().toolbar().closeButton(), &window().toolbar().tabButton(SettingsTab::general),
      &window().general().temperature(), &window().general().select()};
  for (QWidget* control : controls) {
    window().setFocus();
    const QImage without = pictureOf(*control).toImage();
    control->setFocus(Qt::TabFocusReason);
    EXPECT_NE(pictureOf(*control).toImage(), without) << control->accessibleName().toStdString();
  }
  window().toolbar().selectTab(SettingsTab::extra);
  ToggleRow& row = toggle(settings_key::kGpuFrequency);
  const QImage without = pictureOf(row).toImage();
  row.setFocus(Qt::TabFocusReason);
  EXPECT_NE(pictureOf(row).toImage(), without);
}

TEST_F(SettingsWindowTest, ShowsChangesThatOthersMake) {
  shown();
  defaults_.setInteger(settings_key::kTemperatureUnit, 1);
  defaults_.setBool(settings_key::kGpuFrequency, true);
  settleSettings();
  EXPECT_EQ(window().general().temperature().currentIndex(), 1);
  EXPECT_TRUE(toggle(settings_key::kGpuFrequency).isChecked());
}

TEST_F(SettingsWindowTest, ShowsChangesThatAnotherThreadMakesOnTheMainThread) {
  shown();
  std::thread([this] { defaults_.setInteger(settings_key::kTemperatureUnit, 1); }).join();
  EXPECT_EQ(window().general().temperature().currentIndex(), 0);
  settleSettings();
  EXPECT_EQ(window().general().temperature().currentIndex(), 1);
}

TEST_F(SettingsWindowTest, ShowsWhatChangedWhileItWasHidden) {
  shown();
  window().close();
  defaults_.setBool(settings_key::kShowEPUtilization, true);
  settleSettings();
  shown();
  EXPECT_TRUE(toggle(settings_key::kShowEPUtilization).isChecked());
}

TEST_F(SettingsWindowTest, MayEndWhileAChangeIsUnderWay) {
  shown();
  defaults_.setBool(settings_key::kShowEPUtilization, true);
  endWindow();
  queue_.run();
}

TEST_F(SettingsWindowTest, SwitchesTheColoursOfBothTabs) {
  shown();
  for (const auto scheme : {ColorScheme::dark, ColorScheme::light}) {
    window().setColorScheme(scheme);
    settle();
    const QImage general = pictureOf(window(), 1).toImage();
    EXPECT_EQ(general.pixelColor(2, 100), toColor(colorsOf(scheme).window));
    EXPECT_EQ(general.pixelColor(200, 63), toColor(colorsOf(scheme).divider));
    EXPECT_EQ(general.pixelColor(200, 64 + 75), toColor(colorsOf(scheme).divider));
    const QImage off = pictureOf(toggle(settings_key::kGpuFrequency), 1).toImage();
    EXPECT_EQ(off.pixelColor(off.width() - 8, 13), toColor(colorsOf(scheme).controlSelected));
  }
}

}  // namespace
}  // namespace pallimo::ui::widgets
