// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <QAbstractItemView>
#include <algorithm>

#include "end_to_end/window/window_app.h"
#include "ui/display_settings.h"
#include "ui/widgets/basics/close_button.h"
#include "ui/widgets/settings/choice_box.h"
#include "ui/widgets/settings/gpu_settings_view.h"
#include "ui/widgets/settings/settings_toolbar.h"
#include "ui/widgets/settings/tab_button.h"
#include "ui/widgets/settings/toggle_row.h"
#include "unit/ui/widgets/settings/no_double_clicks.h"

namespace pallimo::end_to_end {
namespace {

using Labels = std::vector<std::string>;

/// Each setting, changed as a user does, and what becomes of it: in the panels and the engine at
/// once, and in the next run.
class Settings : public WindowApp {
 protected:
  void openExtra() const {
    openSettings();
    click(settings().toolbar().tabButton(ui::SettingsTab::extra));
    ASSERT_TRUE(settings().extra().isVisible());
  }
  void flip(const char* key) const { click(*settings().extra().toggle(key)); }
  void pickByMouse(int index) const {
    widgets::ChoiceBox& picker = settings().general().temperature();
    const widgets::NoDoubleClicks theFirstOpensTheList;
    click(picker);
    QAbstractItemView& list = *picker.view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window()));
    const QPoint row = list.visualRect(list.model()->index(index, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, row);
  }

  /// The labels over the graph, from left to right.
  Labels labelsOf(std::size_t index) const {
    Labels labels;
    for (const auto& column : panel(index).columns) {
      for (const auto& value : column.values) labels.push_back(value.labelUp);
    }
    return labels;
  }
  std::size_t linesOf(std::size_t index) const { return panel(index).graph.datas.size(); }
  bool comesTo(std::size_t index, const Labels& labels) const {
    return soon([&] { return labelsOf(index) == labels; });
  }
  bool showsUnit(const std::string& unit) const {
    return soon([&] { return panel(kTemperature).title.labelRight == unit; });
  }
};

TEST_F(Settings, AreWhatTheyAreWithoutAnyStored) {
  startLive();
  EXPECT_EQ(labelsOf(kFrequency), (Labels{"E-CORE", "P-CORE"}));
  EXPECT_EQ(labelsOf(kUtilization), Labels{"CORE"});
  EXPECT_EQ(panel(kTemperature).title.labelRight, "℃");
  EXPECT_FALSE(general().modelPowerMetrics()->includeGPU());
  openExtra();
  for (const char* key : {ui::settings_key::kGpuUtilization, ui::settings_key::kGpuFrequency,
                          ui::settings_key::kShowEPUtilization}) {
    EXPECT_FALSE(settings().extra().toggle(key)->isChecked()) << key;
  }
}

TEST_F(Settings, FahrenheitByMouseChangesTitleAxisFiguresAndHelp) {
  startLive();
  openSettings();
  pickByMouse(1);
  ASSERT_TRUE(showsUnit("℉"));
  EXPECT_EQ(panel(kTemperature).title.help,
            "Temperature in Degrees Fahrenheit. Data from SMC/IOHIDService");
  EXPECT_EQ(panel(kTemperature).graph.axisLabels,
            (Labels{"250", "215", "180", "145", "110", "75"}));
  EXPECT_TRUE(soon([this] {  // of the same sample
    const double highest = general().modelTemperature()->snapshot()->CPUMax * 9 / 5 + 32;
    return panel(kTemperature).columns.at(1).values.at(0).value ==
           ui::formatValue(ui::ValueFormat::whole, highest);
  }));
  EXPECT_EQ(platform().defaults.integerForKey(ui::settings_key::kTemperatureUnit), 1);
}

TEST_F(Settings, FahrenheitLeavesTheHistoriesInCelsius) {
  startLive();
  openSettings();
  pickByMouse(1);
  ASSERT_TRUE(showsUnit("℉"));
  // A CPU at work is warmer than 75 degrees Fahrenheit and colder than as many Celsius.
  const auto model = general().modelTemperature()->snapshot();
  for (const double value : model->historicCPUMin.newest) EXPECT_LT(value, 75);
  for (const double value : panel(kTemperature).seriesTexts.at(0).values) EXPECT_GT(value, 75);
}

TEST_F(Settings, FahrenheitByKeysAndBackSurviveRestarts) {
  startLive();
  openSettings();
  ASSERT_TRUE(goByKeysTo(settings().general().temperature()));
  press(Qt::Key_Down);
  ASSERT_TRUE(showsUnit("℉"));
  restartApp();
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(showsUnit("℉"));
  openSettings();
  EXPECT_EQ(settings().general().temperature().currentText(), "℉ — Fahrenheit");
  ASSERT_TRUE(goByKeysTo(settings().general().temperature()));
  press(Qt::Key_Up);
  ASSERT_TRUE(showsUnit("℃"));
  restartApp();
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(showsUnit("℃"));
}

TEST_F(Settings, ShowGpuOfFrequencyReachesPanelAndEngine) {
  startLive();
  openExtra();
  flip(ui::settings_key::kGpuFrequency);
  EXPECT_TRUE(comesTo(kFrequency, {"E-CORE", "P-CORE", "GPU"}));
  EXPECT_EQ(linesOf(kFrequency), 3u);
  EXPECT_EQ(labelsOf(kUtilization), Labels{"CORE"});  // the other toggle of that name
  EXPECT_TRUE(general().modelPowerMetrics()->includeGPU());
  // The next samples have it.
  EXPECT_TRUE(soon([this] { return general().modelFrequency()->snapshot()->GPU > 0; }));
  restartApp();
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(comesTo(kFrequency, {"E-CORE", "P-CORE", "GPU"}));
  EXPECT_TRUE(general().modelPowerMetrics()->includeGPU());
  openExtra();
  flip(ui::settings_key::kGpuFrequency);
  EXPECT_TRUE(comesTo(kFrequency, {"E-CORE", "P-CORE"}));
  EXPECT_FALSE(general().modelPowerMetrics()->includeGPU());
}

TEST_F(Settings, ShowGpuOfUtilizationReachesItsPanelAlone) {
  startLive();
  openExtra();
  flip(ui::settings_key::kGpuUtilization);
  EXPECT_TRUE(comesTo(kUtilization, {"CORE", "GPU"}));
  EXPECT_EQ(linesOf(kUtilization), 2u);
  EXPECT_EQ(labelsOf(kFrequency), (Labels{"E-CORE", "P-CORE"}));
  restartApp();
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(comesTo(kUtilization, {"CORE", "GPU"}));
}

TEST_F(Settings, ShowECorePCoreSplitsTheUtilization) {
  startLive();
  openExtra();
  flip(ui::settings_key::kShowEPUtilization);
  EXPECT_TRUE(comesTo(kUtilization, {"E-CORE", "P-CORE"}));
  EXPECT_EQ(linesOf(kUtilization), 2u);
  restartApp();
  ASSERT_TRUE(becomesLive());
  EXPECT_TRUE(comesTo(kUtilization, {"E-CORE", "P-CORE"}));
}

TEST_F(Settings, TogglesWorkByKeys) {
  startLive();
  openSettings();
  ASSERT_TRUE(goByKeysTo(settings().toolbar().tabButton(ui::SettingsTab::general)));
  press(Qt::Key_Right);
  ASSERT_TRUE(settings().extra().isVisible());
  for (const char* key : {ui::settings_key::kGpuUtilization, ui::settings_key::kShowEPUtilization,
                          ui::settings_key::kGpuFrequency}) {
    ASSERT_TRUE(goByKeysTo(*settings().extra().toggle(key))) << key;
    press(Qt::Key_Space);
    EXPECT_TRUE(platform().defaults.boolForKey(key)) << key;
  }
  EXPECT_TRUE(comesTo(kUtilization, {"E-CORE", "P-CORE", "GPU"}));
  EXPECT_TRUE(comesTo(kFrequency, {"E-CORE", "P-CORE", "GPU"}));
}

TEST_F(Settings, HistoriesStayWhenALineIsShownAnew) {
  startLive();
  openExtra();
  flip(ui::settings_key::kGpuUtilization);
  ASSERT_TRUE(comesTo(kUtilization, {"CORE", "GPU"}));
  // What came before the line was asked for is there.
  EXPECT_GE(panel(kUtilization).graph.datas.at(0).data.size(), 3u);
}

TEST_F(Settings, WindowClosesAndTheAppGoesOn) {
  startLive();
  openSettings();
  click(settings().toolbar().closeButton());
  EXPECT_TRUE(soon([this] { return !settings().isVisible(); }));
  EXPECT_TRUE(samples(2));
  openSettings();
  press(Qt::Key_Escape);
  EXPECT_TRUE(soon([this] { return !settings().isVisible(); }));
  EXPECT_TRUE(window().isVisible());
}

TEST_F(Settings, NoWindowCanBeZoomedOrFillTheScreen) {
  startLive();
  openSettings();
  for (QWidget* shown : std::initializer_list<QWidget*>{&window(), &settings()}) {
    const QSize size = shown->size();
    for (const Qt::WindowState state : {Qt::WindowMaximized, Qt::WindowFullScreen}) {
      shown->setWindowState(state);
      EXPECT_TRUE(soon([shown] {
        return shown->windowState() == Qt::WindowNoState ||
               shown->windowState() == Qt::WindowActive;
      }));
      EXPECT_EQ(shown->size(), size);
    }
    EXPECT_FALSE(shown->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  }
}

}  // namespace
}  // namespace pallimo::end_to_end
