// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/settings_content.h"

#include <algorithm>
#include <cstddef>

#include "base/fatal.h"
#include "ui/display_settings.h"

namespace pallimo::ui {

namespace {

constexpr std::array<SettingsToggle, 2> kUtilizationToggles = {{
    {"Show GPU", settings_key::kGpuUtilization},
    {"Show E-Core/P-Core", settings_key::kShowEPUtilization},
}};

constexpr std::array<SettingsToggle, 1> kFrequencyToggles = {{
    {"Show GPU", settings_key::kGpuFrequency},
}};

constexpr std::array<SettingsGroup, 2> kExtraSettings = {{
    {"Utilization:", kUtilizationToggles},
    {"Frequency:", kFrequencyToggles},
}};

}  // namespace

std::optional<std::size_t> storedTemperatureChoice(const ports::UserDefaults& defaults) {
  const std::int64_t stored = defaults.integerForKey(settings_key::kTemperatureUnit);
  const auto found =
      std::find_if(kTemperatureChoices.begin(), kTemperatureChoices.end(),
                   [stored](const TemperatureChoice& choice) { return choice.value == stored; });
  if (found == kTemperatureChoices.end()) return std::nullopt;
  return static_cast<std::size_t>(found - kTemperatureChoices.begin());
}

void storeTemperatureChoice(ports::UserDefaults& defaults, const TemperatureChoice& choice) {
  defaults.setInteger(settings_key::kTemperatureUnit, choice.value);
}

std::span<const SettingsGroup> extraSettings() { return kExtraSettings; }

std::string effectiveLogFolder(const std::optional<std::string>& stored,
                               const std::optional<std::string>& modelFolder,
                               const std::function<std::optional<std::string>()>& desktopFolder,
                               const IsDirectory& isDirectory) {
  if (stored && !stored->empty() && isDirectory(*stored)) return *stored;
  if (modelFolder) return *modelFolder;
  const auto desktop = desktopFolder();
  if (!desktop) base::fatal("There is no desktop folder.");
  return *desktop;
}

void storeLogFolder(ports::UserDefaults& defaults, const ChooserResult& result) {
  if (result.answer != ChooserResult::Answer::confirmed) return;
  defaults.setText(settings_key::kPathFolderLocation, result.folder);
}

}  // namespace pallimo::ui
