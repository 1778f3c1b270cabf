// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/display_settings.h"

#include <gtest/gtest.h>

#include "fakes/memory_user_defaults.h"

namespace pallimo::ui {
namespace {

TEST(DisplaySettings, NothingStoredShowsCelsiusAndNoExtras) {
  const fakes::MemoryUserDefaults defaults;
  EXPECT_EQ(readDisplaySettings(defaults), DisplaySettings());
}

TEST(DisplaySettings, EachKeySwitchesItsOwnExtra) {
  {
    fakes::MemoryUserDefaults defaults;
    defaults.setBool("gpuFrequency", true);
    EXPECT_EQ(readDisplaySettings(defaults), (DisplaySettings{true, false, false, false}));
  }
  {
    fakes::MemoryUserDefaults defaults;
    defaults.setBool("gpuUtilization", true);
    EXPECT_EQ(readDisplaySettings(defaults), (DisplaySettings{false, true, false, false}));
  }
  {
    fakes::MemoryUserDefaults defaults;
    defaults.setBool("showEPUtilization", true);
    EXPECT_EQ(readDisplaySettings(defaults), (DisplaySettings{false, false, true, false}));
  }
}

TEST(DisplaySettings, AnyUnitButZeroIsFahrenheit) {
  fakes::MemoryUserDefaults defaults;
  for (const std::int64_t unit : {1, 2, -1}) {
    defaults.setInteger("temperatureUnit", unit);
    EXPECT_TRUE(readDisplaySettings(defaults).isFahrenheit) << unit;
  }
  defaults.setInteger("temperatureUnit", 0);
  EXPECT_FALSE(readDisplaySettings(defaults).isFahrenheit);
}

TEST(DisplaySettings, TheKeysAreThoseOfTheStore) {
  EXPECT_STREQ(settings_key::kGpuFrequency, "gpuFrequency");
  EXPECT_STREQ(settings_key::kGpuUtilization, "gpuUtilization");
  EXPECT_STREQ(settings_key::kShowEPUtilization, "showEPUtilization");
  EXPECT_STREQ(settings_key::kTemperatureUnit, "temperatureUnit");
  EXPECT_STREQ(settings_key::kPathFolderLocation, "pathFolderLocation");
}

}  // namespace
}  // namespace pallimo::ui
