// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/models/content_view.h"

namespace pallimo::app {

ContentView::ContentView(ports::MainQueue& mainQueue, GeneralModel& general)
    : general_(general), contentModel_(ContentModel::create(mainQueue, general)) {}

ui::MainContent ContentView::content() const {
  const helper_link::XPCManager& manager = *general_.xpcmanager();
  const bool isAppleSilicon = general_.processor() == helper_link::Processor::appleSilicon;
  return ui::mainContent(isAppleSilicon, manager.isAuthorized(), manager.isUpdateNeeded());
}

std::optional<ui::MainContent> ContentView::press() {
  // Looked up once: a reply may change it at any moment.
  const ui::MainContent shown = content();
  if (ui::mainContentText(shown, hideUpdateButton_).button.empty()) return std::nullopt;
  if (shown == ui::MainContent::update) {
    hideUpdateButton_ = true;
    general_.xpcmanager()->updateHelper();
  } else {
    general_.xpcmanager()->installHelper();
  }
  return shown;
}

}  // namespace pallimo::app
