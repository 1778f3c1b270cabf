// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/settings_content.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "fakes/memory_user_defaults.h"
#include "ui/display_settings.h"

namespace pallimo::ui {
namespace {

using Texts = std::vector<std::string>;

TEST(SettingsTabs, AreGeneralAndExtraInThatOrder) {
  ASSERT_EQ(kSettingsTabs.size(), 2u);
  EXPECT_EQ(kSettingsTabs[0].tab, SettingsTab::general);
  EXPECT_EQ(kSettingsTabs[0].label, "General");
  EXPECT_EQ(kSettingsTabs[0].symbol, "gear");
  EXPECT_EQ(kSettingsTabs[1].tab, SettingsTab::extra);
  EXPECT_EQ(kSettingsTabs[1].label, "Extra");
  EXPECT_EQ(kSettingsTabs[1].symbol, "rectangle.grid.1x2");
}

TEST(SettingsTabs, AreEqualAndHashedByCase) {
  const std::hash<SettingsTab> hash;
  EXPECT_NE(SettingsTab::general, SettingsTab::extra);
  EXPECT_NE(hash(SettingsTab::general), hash(SettingsTab::extra));
  EXPECT_EQ(hash(SettingsTab::extra), hash(kSettingsTabs[1].tab));
}

TEST(GeneralSettings, AreLabelled) {
  EXPECT_EQ(kTemperatureHeading, "Temperature:");
  EXPECT_EQ(kLogFileHeading, "Log File location:");
  EXPECT_STREQ(kSelectFolder, "Select");
}

TEST(TemperatureChoices, AreCelciusAndFahrenheit) {
  ASSERT_EQ(kTemperatureChoices.size(), 2u);
  EXPECT_EQ(kTemperatureChoices[0].label, "℃ — Celcius");
  EXPECT_EQ(kTemperatureChoices[0].value, 0);
  EXPECT_EQ(kTemperatureChoices[1].label, "℉ — Fahrenheit");
  EXPECT_EQ(kTemperatureChoices[1].value, 1);
}

TEST(TemperatureChoices, NothingStoredIsCelcius) {
  EXPECT_EQ(storedTemperatureChoice(fakes::MemoryUserDefaults()), 0u);
}

TEST(TemperatureChoices, FahrenheitStoresOneUnderItsKey) {
  fakes::MemoryUserDefaults defaults;
  storeTemperatureChoice(defaults, kTemperatureChoices[1]);
  EXPECT_EQ(defaults.integerForKey("temperatureUnit"), 1);
  EXPECT_EQ(storedTemperatureChoice(defaults), 1u);
}

TEST(TemperatureChoices, CelciusStoresZero) {
  fakes::MemoryUserDefaults defaults;
  defaults.setInteger("temperatureUnit", 1);
  storeTemperatureChoice(defaults, kTemperatureChoices[0]);
  EXPECT_TRUE(defaults.contains("temperatureUnit"));
  EXPECT_EQ(defaults.integerForKey("temperatureUnit"), 0);
}

TEST(TemperatureChoices, AStoredNumberThatIsNoChoiceChoosesNone) {
  fakes::MemoryUserDefaults defaults;
  defaults.setInteger("temperatureUnit", 2);
  EXPECT_EQ(storedTemperatureChoice(defaults), std::nullopt);
}

TEST(ExtraSettings, AreTwoGroupsOfToggles) {
  Texts lines;
  for (const SettingsGroup& group : extraSettings()) {
    lines.emplace_back(group.heading);
    for (const SettingsToggle& toggle : group.toggles) {
      lines.push_back(std::string(toggle.label) + " = " + toggle.key);
    }
  }
  EXPECT_EQ(lines, (Texts{"Utilization:", "Show GPU = gpuUtilization",
                          "Show E-Core/P-Core = showEPUtilization",
                          "Frequency:", "Show GPU = gpuFrequency"}));
}

TEST(ExtraSettings, AreOffWhenNothingIsStored) {
  const fakes::MemoryUserDefaults defaults;
  for (const SettingsGroup& group : extraSettings()) {
    for (const SettingsToggle& toggle : group.toggles) {
      EXPECT_FALSE(defaults.boolForKey(toggle.key)) << toggle.key;
    }
  }
}

TEST(ExtraSettings, AToggleReachesThePanelsByItsKey) {
  fakes::MemoryUserDefaults defaults;
  for (const SettingsGroup& group : extraSettings()) {
    for (const SettingsToggle& toggle : group.toggles) defaults.setBool(toggle.key, true);
  }
  EXPECT_EQ(readDisplaySettings(defaults), (DisplaySettings{true, true, true, false}));
}

/// A disk with some directories, and a desktop.
struct Disk {
  std::vector<std::string> directories;
  std::optional<std::string> desktop = "/Users/me/Desktop";

  std::string logFolder(const std::optional<std::string>& stored,
                        const std::optional<std::string>& modelFolder) const {
    return effectiveLogFolder(
        stored, modelFolder, [this] { return desktop; },
        [this](const std::string& path) {
          return std::find(directories.begin(), directories.end(), path) != directories.end();
        });
  }
};

TEST(EffectiveLogFolder, IsTheStoredOneIfItIsADirectory) {
  const Disk disk{.directories = {"/logs"}};
  EXPECT_EQ(disk.logFolder("/logs", "/model"), "/logs");
}

TEST(EffectiveLogFolder, IsTheModelsIfTheStoredOneIsNoDirectory) {
  const Disk disk{.directories = {"/model"}};
  EXPECT_EQ(disk.logFolder("/gone", "/model"), "/model");
  EXPECT_EQ(disk.logFolder("", "/model"), "/model");
  EXPECT_EQ(disk.logFolder(std::nullopt, "/model"), "/model");
}

TEST(EffectiveLogFolder, TakesTheModelsAsItIs) {
  EXPECT_EQ(Disk().logFolder("/gone", "/gone too"), "/gone too");
}

TEST(EffectiveLogFolder, IsTheDesktopIfTheModelHasNone) {
  EXPECT_EQ(Disk().logFolder("/gone", std::nullopt), "/Users/me/Desktop");
  EXPECT_EQ(Disk().logFolder(std::nullopt, std::nullopt), "/Users/me/Desktop");
}

TEST(EffectiveLogFolder, AnEmptyStoredTextNamesNoDirectory) {
  const Disk disk{.directories = {""}};
  EXPECT_EQ(disk.logFolder("", std::nullopt), "/Users/me/Desktop");
}

TEST(EffectiveLogFolder, NeedsNoDesktopIfAnotherFolderIsThere) {
  const Disk disk{.directories = {"/logs"}, .desktop = std::nullopt};
  EXPECT_EQ(disk.logFolder("/logs", std::nullopt), "/logs");
  EXPECT_EQ(disk.logFolder(std::nullopt, "/model"), "/model");
}

TEST(EffectiveLogFolderDeathTest, ASystemWithoutADesktopStopsTheProgram) {
  const Disk disk{.directories = {}, .desktop = std::nullopt};
  EXPECT_DEATH(disk.logFolder("/gone", std::nullopt), "^There is no desktop folder\\.\n$");
}

TEST(LogFolderChooser, AConfirmedFolderIsStored) {
  fakes::MemoryUserDefaults defaults;
  storeLogFolder(defaults, {ChooserResult::Answer::confirmed, "/logs"});
  EXPECT_EQ(defaults.textForKey("pathFolderLocation"), "/logs");
}

TEST(LogFolderChooser, AConfirmationWithoutAFolderStoresAnEmptyText) {
  fakes::MemoryUserDefaults defaults;
  defaults.setText("pathFolderLocation", "/logs");
  storeLogFolder(defaults, {ChooserResult::Answer::confirmed, ""});
  EXPECT_EQ(defaults.textForKey("pathFolderLocation"), "");
}

TEST(LogFolderChooser, CancellingChangesNothing) {
  fakes::MemoryUserDefaults defaults;
  int changes = 0;
  const auto subscription = defaults.observeChanges([&changes] { ++changes; });
  storeLogFolder(defaults, {ChooserResult::Answer::cancelled, "/other"});
  EXPECT_EQ(changes, 0);
  EXPECT_FALSE(defaults.contains("pathFolderLocation"));
}

TEST(LogFolderChooser, AStoredFolderThatIsGoneStaysStored) {
  fakes::MemoryUserDefaults defaults;
  defaults.setText("pathFolderLocation", "/gone");
  EXPECT_EQ(Disk().logFolder(defaults.textForKey("pathFolderLocation"), std::nullopt),
            "/Users/me/Desktop");
  EXPECT_EQ(defaults.textForKey("pathFolderLocation"), "/gone");
}

}  // namespace
}  // namespace pallimo::ui
