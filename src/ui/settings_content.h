// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ports/user_defaults.h"

namespace pallimo::ui {

// What the settings window says, to the letter ("Celcius" included), and what its controls do. The
// settings themselves live in the user's defaults alone; a write is at once visible to all who
// observe its key. Functions may be called by any thread.

// In the order of the window.
enum class SettingsTab { general, extra };

struct SettingsTabContent {
  SettingsTab tab;
  std::string_view label;
  std::string_view symbol;  ///< the system's name of the symbol
};

inline constexpr std::array<SettingsTabContent, 2> kSettingsTabs = {{
    {SettingsTab::general, "General", "gear"},
    {SettingsTab::extra, "Extra", "rectangle.grid.1x2"},
}};

// The tab "General", top to bottom, with a divider before the log files.

inline constexpr std::string_view kTemperatureHeading = "Temperature:";

struct TemperatureChoice {
  std::string_view label;
  std::int64_t value;  ///< as it is stored
};

inline constexpr std::array<TemperatureChoice, 2> kTemperatureChoices = {{
    {"℃ — Celcius", 0},
    {"℉ — Fahrenheit", 1},
}};

/// The index of the choice that is stored; nothing stored is the first. None when another number is
/// stored: the picker then shows no choice, although the panels show Fahrenheit.
std::optional<std::size_t> storedTemperatureChoice(const ports::UserDefaults& defaults);
void storeTemperatureChoice(ports::UserDefaults& defaults, const TemperatureChoice& choice);

inline constexpr std::string_view kLogFileHeading = "Log File location:";
/// Both the button that opens the folder chooser and the button in it that confirms. A key of
/// translations, and the text where there is none.
inline constexpr char kSelectFolder[] = "Select";

// The tab "Extra", top to bottom.

struct SettingsToggle {
  std::string_view label;
  const char* key;  ///< in the user's defaults; off when nothing is stored
};

/// The heading tells the two toggles "Show GPU" apart.
struct SettingsGroup {
  std::string_view heading;
  std::span<const SettingsToggle> toggles;
};

std::span<const SettingsGroup> extraSettings();

// The log folder.

using IsDirectory = std::function<bool(const std::string& path)>;

/// The folder that the settings show and in which the chooser opens: the stored one if it is a
/// directory, else the one that the log file's model holds, else the desktop. A stored folder that
/// is gone stays stored. The desktop is asked for last; a system without one stops the program.
std::string effectiveLogFolder(const std::optional<std::string>& stored,
                               const std::optional<std::string>& modelFolder,
                               const std::function<std::optional<std::string>()>& desktopFolder,
                               const IsDirectory& isDirectory);

/// How the user left the folder chooser.
struct ChooserResult {
  enum class Answer { cancelled, confirmed };
  Answer answer = Answer::cancelled;
  std::string folder;  ///< absolute; empty when none came back
};

/// Stores the folder of a confirmed choice, also an empty one; a cancelled one changes nothing.
void storeLogFolder(ports::UserDefaults& defaults, const ChooserResult& result);

}  // namespace pallimo::ui
