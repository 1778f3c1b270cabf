// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/window_content.h"

#include "ui/display_settings.h"
#include "ui/main_title_content.h"
#include "ui/panel.h"

namespace pallimo::app {

namespace {

std::vector<ui::Panel> panels(const GeneralModel& general, const ports::UserDefaults& defaults,
                              ports::RandomNumbers& random) {
  const ui::DisplaySettings settings = ui::readDisplaySettings(defaults);
  std::vector<ui::Panel> panels;
  panels.push_back(ui::powerPanel(*general.modelPower()->snapshot(), random));
  panels.push_back(ui::frequencyPanel(*general.modelFrequency()->snapshot(), settings, random));
  panels.push_back(ui::temperaturePanel(*general.modelTemperature()->snapshot(), settings, random));
  panels.push_back(ui::utilizationPanel(*general.modelUtilization()->snapshot(), settings, random));
  return panels;
}

}  // namespace

ui::MainWindowContent windowContent(const ContentView& view, const GeneralModel& general,
                                    const ports::UserDefaults& defaults,
                                    ports::RandomNumbers& random) {
  const ui::MainContent shown = view.content();
  const ui::MainContentText words = ui::mainContentText(shown, view.hideUpdateButton());
  ui::MainWindowContent content;
  content.screen = shown;
  content.heading = words.heading;
  content.text = words.text;
  content.button = words.button;
  content.title = ui::mainTitleContent(*general.modelMainTitle());
  if (shown == ui::MainContent::live) content.panels = panels(general, defaults, random);
  return content;
}

}  // namespace pallimo::app
