// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/general_settings_view.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QToolTip>
#include <QWheelEvent>

#include "ui/widgets/basics/colors.h"
#include "unit/ui/widgets/panels/kept_picture.h"
#include "unit/ui/widgets/settings/no_double_clicks.h"
#include "unit/ui/widgets/settings/settings_window_fixture.h"

namespace pallimo::ui::widgets {
namespace {

using Answer = ChooserResult::Answer;

class GeneralSettingsViewTest : public SettingsWindowFixture {
 protected:
  ChoiceBox& temperature() { return window().general().temperature(); }
  std::optional<std::string> storedFolder() const {
    return defaults_.textForKey(settings_key::kPathFolderLocation);
  }
};

TEST_F(GeneralSettingsViewTest, ShowsTheDefaultsWhenNothingIsStored) {
  shown();
  EXPECT_EQ(temperature().currentText(), "℃ — Celcius");
  EXPECT_EQ(shownFolder(), "/home/me/Desktop");
  EXPECT_FALSE(defaults_.contains(settings_key::kTemperatureUnit));
  EXPECT_FALSE(defaults_.contains(settings_key::kPathFolderLocation));
}

TEST_F(GeneralSettingsViewTest, PutsWhatBelongsToAHeadingBelowItAndIndented) {
  shown();
  GeneralSettingsView& page = window().general();
  const QLabel& unit = heading(page, "Temperature:");
  const QLabel& logFile = heading(page, "Log File location:");
  // From top to bottom; the divider is a line, and paints in no widget of its own.
  EXPECT_LT(unit.geometry().bottom(), temperature().y());
  EXPECT_LT(temperature().geometry().bottom(), logFile.y());
  EXPECT_LT(logFile.geometry().center().y(), page.folder().geometry().center().y());
  EXPECT_LT(page.folder().geometry().center().y(), page.select().y());
  EXPECT_EQ(unit.x(), logFile.x());
  for (const QWidget* control :
       std::vector<QWidget*>{&temperature(), &page.folder(), &page.select()}) {
    EXPECT_GT(control->x(), unit.x());
  }
  const QColor divider = toColor(colorsOf(ColorScheme::light).divider);
  window().setColorScheme(ColorScheme::light);
  const QImage image = pictureOf(page, 1).toImage();
  std::vector<int> dividers;
  for (int y = 0; y < image.height(); ++y) {
    if (image.pixelColor(unit.x() + 1, y) == divider &&
        image.pixelColor(page.width() - unit.x() - 2, y) == divider) {
      dividers.push_back(y);
    }
  }
  ASSERT_EQ(dividers.size(), 1u);
  EXPECT_GT(dividers[0], temperature().geometry().bottom());
  EXPECT_LT(dividers[0], logFile.y());
}

TEST_F(GeneralSettingsViewTest, OffersTwoTemperatureUnits) {
  ASSERT_EQ(temperature().count(), 2);
  EXPECT_EQ(temperature().itemText(0), "℃ — Celcius");
  EXPECT_EQ(temperature().itemText(1), "℉ — Fahrenheit");
}

TEST_F(GeneralSettingsViewTest, StoresTheUnitThatIsClicked) {
  const NoDoubleClicks theFirstOpensTheList;
  shown();
  QTest::mouseClick(&temperature(), Qt::LeftButton);
  settle();
  auto* list = temperature().view();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                    list->visualRect(list->model()->index(1, 0)).center());
  EXPECT_EQ(defaults_.integerForKey(settings_key::kTemperatureUnit), 1);
  settleSettings();
  EXPECT_EQ(temperature().currentText(), "℉ — Fahrenheit");
}

TEST_F(GeneralSettingsViewTest, StoresTheUnitThatIsChosenByKeys) {
  shown();
  temperature().setFocus();
  QTest::keyClick(&temperature(), Qt::Key_Down);
  EXPECT_EQ(defaults_.integerForKey(settings_key::kTemperatureUnit), 1);
  QTest::keyClick(&temperature(), Qt::Key_Up);
  EXPECT_TRUE(defaults_.contains(settings_key::kTemperatureUnit));
  EXPECT_EQ(defaults_.integerForKey(settings_key::kTemperatureUnit), 0);
}

TEST_F(GeneralSettingsViewTest, ShowsNoUnitForAnotherNumber) {
  defaults_.setInteger(settings_key::kTemperatureUnit, 7);
  shown();
  EXPECT_EQ(temperature().currentIndex(), -1);
  EXPECT_EQ(temperature().currentText(), "");
}

TEST_F(GeneralSettingsViewTest, LeavesTheUnitToItsChoicesAndNotToTheWheel) {
  shown();
  QWheelEvent down({10, 10}, temperature().mapToGlobal(QPointF(10, 10)), {}, {0, -120},
                   Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&temperature(), &down);
  EXPECT_EQ(temperature().currentIndex(), 0);
  EXPECT_FALSE(defaults_.contains(settings_key::kTemperatureUnit));
}

TEST_F(GeneralSettingsViewTest, ShowsTheStoredFolder) {
  folders_.push_back("/logs");
  defaults_.setText(settings_key::kPathFolderLocation, "/logs");
  shown();
  EXPECT_EQ(shownFolder(), "/logs");
}

TEST_F(GeneralSettingsViewTest, ShowsTheModelsFolderWhenTheStoredOneIsGone) {
  modelFolder_ = "/models";
  defaults_.setText(settings_key::kPathFolderLocation, "/gone");
  shown();
  EXPECT_EQ(shownFolder(), "/models");
  EXPECT_EQ(storedFolder(), "/gone");
  pressSelect();
  EXPECT_EQ(choosersOpenedIn_, std::vector<std::string>{"/models"});
}

TEST_F(GeneralSettingsViewTest, ShowsTheDesktopWhenThereIsNoOtherFolder) {
  defaults_.setText(settings_key::kPathFolderLocation, "/gone");
  shown();
  EXPECT_EQ(shownFolder(), "/home/me/Desktop");
  EXPECT_EQ(storedFolder(), "/gone");
}

TEST_F(GeneralSettingsViewTest, ADesktopThatIsMissingWhenTheWindowIsShownStopsTheProgram) {
  desktopFolder_ = std::nullopt;
  window();
  EXPECT_DEATH(window().present(), "There is no desktop folder\\.\n$");
}

TEST_F(GeneralSettingsViewTest, LooksForTheFolderAgainWhenTheUserComesBack) {
  folders_.push_back("/logs");
  defaults_.setText(settings_key::kPathFolderLocation, "/logs");
  shown();
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  folders_.pop_back();
  EXPECT_EQ(shownFolder(), "/logs");
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  EXPECT_EQ(shownFolder(), "/home/me/Desktop");
}

TEST_F(GeneralSettingsViewTest, SelectOpensTheChooserInTheFolderThatIsShown) {
  folders_.push_back("/logs");
  defaults_.setText(settings_key::kPathFolderLocation, "/logs");
  shown();
  EXPECT_EQ(window().general().select().text(), "Select");
  pressSelect();
  EXPECT_EQ(choosersOpenedIn_, std::vector<std::string>{"/logs"});
}

TEST_F(GeneralSettingsViewTest, TellsTheWholeOfALongPathToTheKeyboard) {
  modelFolder_ = "/" + std::string(200, 'x');
  shown();
  window().general().select().setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(QToolTip::text().contains(QString::fromStdString(*modelFolder_)));
  window().setFocus();
  EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }, 60'000));
}

TEST_F(GeneralSettingsViewTest, AConfirmedFolderIsStoredAndShown) {
  folders_.push_back("/chosen");
  chooserAnswer_ = {Answer::confirmed, "/chosen"};
  shown();
  pressSelect();
  EXPECT_EQ(storedFolder(), "/chosen");
  EXPECT_EQ(shownFolder(), "/chosen");
}

TEST_F(GeneralSettingsViewTest, AConfirmedChoiceOfNothingIsStoredAsEmpty) {
  defaults_.setText(settings_key::kPathFolderLocation, "/logs");
  chooserAnswer_ = {Answer::confirmed, ""};
  shown();
  pressSelect();
  EXPECT_EQ(storedFolder(), "");
}

TEST_F(GeneralSettingsViewTest, ACancelledChooserLeavesTheSettingUntouched) {
  chooserAnswer_ = {Answer::cancelled, "/chosen"};
  shown();
  pressSelect();
  EXPECT_FALSE(defaults_.contains(settings_key::kPathFolderLocation));
  defaults_.setText(settings_key::kPathFolderLocation, "/stored");
  pressSelect();
  EXPECT_EQ(storedFolder(), "/stored");
}

TEST_F(GeneralSettingsViewTest, KeysPressSelect) {
  shown();
  for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    QTest::keyClick(&window().general().select(), key);
  }
  EXPECT_EQ(choosersOpenedIn_.size(), 3u);
}

}  // namespace
}  // namespace pallimo::ui::widgets
