// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <functional>
#include <optional>
#include <string>

#include "ports/user_defaults.h"
#include "ui/widgets/settings/folder_chooser.h"
#include "ui/widgets/settings/folder_row.h"
#include "ui/widgets/settings/settings_page.h"

namespace pallimo::ui::widgets {

class ChoiceBox;
class PushButton;

/// Where the settings look for the log folder, and how they let the user choose one. All are set;
/// called on the main thread.
struct LogFolderServices {
  std::function<std::optional<std::string>()> modelFolder;  ///< what the log's model holds
  std::function<std::optional<std::string>()> desktopFolder;
  IsDirectory isDirectory = isExistingFolder;
  FolderChooser chooser = chooseFolder;
  FolderRow::Icons icons = desktopFolderIcon;
};

/// The tab "General": the temperature unit and the log folder. Main thread.
class GeneralSettingsView final : public SettingsPage {
 public:
  /// The defaults outlive the view.
  GeneralSettingsView(ports::UserDefaults& defaults, LogFolderServices folders, QWidget* parent);

  void setColorScheme(ColorScheme scheme) override;
  void refresh() override;

  ChoiceBox& temperature() { return *temperature_; }
  FolderRow& folder() { return *folder_; }
  PushButton& select() { return *select_; }

 private:
  void addTemperature();
  void addLogFolder();
  std::string logFolder() const;
  void chooseLogFolder();

  ports::UserDefaults& defaults_;
  const LogFolderServices folders_;
  // Children.
  ChoiceBox* temperature_;
  FolderRow* folder_;
  PushButton* select_;
};

}  // namespace pallimo::ui::widgets
