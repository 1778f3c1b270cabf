// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/settings/gpu_settings_view.h"

#include <gtest/gtest.h>

#include "unit/ui/widgets/panels/kept_picture.h"
#include "unit/ui/widgets/settings/settings_window_fixture.h"

namespace pallimo::ui::widgets {
namespace {

constexpr const char* kKeys[] = {settings_key::kGpuUtilization, settings_key::kShowEPUtilization,
                                 settings_key::kGpuFrequency};

class GPUSettingsViewTest : public SettingsWindowFixture {};

TEST_F(GPUSettingsViewTest, LabelsItsToggles) {
  EXPECT_EQ(toggle(settings_key::kGpuUtilization).text(), "Show GPU");
  EXPECT_EQ(toggle(settings_key::kShowEPUtilization).text(), "Show E-Core/P-Core");
  EXPECT_EQ(toggle(settings_key::kGpuFrequency).text(), "Show GPU");
  EXPECT_EQ(window().extra().toggle("another"), nullptr);
}

TEST_F(GPUSettingsViewTest, PutsTheTogglesOfAGroupBelowItsHeadingAndIndented) {
  shownExtra();
  const QLabel& utilization = heading(window().extra(), "Utilization:");
  const QLabel& frequency = heading(window().extra(), "Frequency:");
  std::vector<int> middles;
  for (const QWidget* widget :
       std::initializer_list<const QWidget*>{&utilization, &toggle(settings_key::kGpuUtilization),
                                             &toggle(settings_key::kShowEPUtilization), &frequency,
                                             &toggle(settings_key::kGpuFrequency)}) {
    middles.push_back(widget->geometry().center().y());
  }
  EXPECT_TRUE(std::is_sorted(middles.begin(), middles.end()));
  EXPECT_EQ(utilization.x(), frequency.x());
  for (const char* key : kKeys) EXPECT_GT(toggle(key).x(), utilization.x());
}

TEST_F(GPUSettingsViewTest, ShowsAllTogglesOffWhenNothingIsStored) {
  shownExtra();
  for (const char* key : kKeys) EXPECT_FALSE(toggle(key).isChecked()) << key;
}

TEST_F(GPUSettingsViewTest, AClickStoresTheSettingOfItsKeyAlone) {
  shownExtra();
  for (const char* key : kKeys) {
    QTest::mouseClick(&toggle(key), Qt::LeftButton);
    settleSettings();
    for (const char* other : kKeys) {
      EXPECT_EQ(defaults_.boolForKey(other), other == key) << key << ' ' << other;
      EXPECT_EQ(toggle(other).isChecked(), other == key) << key << ' ' << other;
    }
    QTest::mouseClick(&toggle(key), Qt::LeftButton);
    settleSettings();
    EXPECT_FALSE(defaults_.boolForKey(key));
  }
}

TEST_F(GPUSettingsViewTest, SpaceSwitchesToo) {
  shownExtra();
  QTest::keyClick(&toggle(settings_key::kGpuFrequency), Qt::Key_Space);
  EXPECT_TRUE(defaults_.boolForKey(settings_key::kGpuFrequency));
}

TEST_F(GPUSettingsViewTest, APressOnTheLabelSwitchesToo) {
  shownExtra();
  QTest::mouseClick(&toggle(settings_key::kGpuFrequency), Qt::LeftButton, Qt::NoModifier,
                    QPoint(5, 13));
  EXPECT_TRUE(defaults_.boolForKey(settings_key::kGpuFrequency));
}

TEST_F(GPUSettingsViewTest, PaintsTheKnobOnTheSideOfItsState) {
  shownExtra();
  ToggleRow& row = toggle(settings_key::kGpuFrequency);
  const QImage off = pictureOf(row, 1).toImage();
  row.setChecked(true);
  const QImage on = pictureOf(row, 1).toImage();
  const QPoint right(row.width() - 3 - 9, 13);
  const QPoint left = right - QPoint(14, 0);
  EXPECT_EQ(off.pixelColor(left), QColor(Qt::white));
  EXPECT_NE(off.pixelColor(right), QColor(Qt::white));
  EXPECT_EQ(on.pixelColor(right), QColor(Qt::white));
  EXPECT_NE(on.pixelColor(left), QColor(Qt::white));
}

}  // namespace
}  // namespace pallimo::ui::widgets
