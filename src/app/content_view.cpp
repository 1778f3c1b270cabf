// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/content_view.h"

namespace pallimo::app {

ContentView::ContentView(ports::MainQueue& mainQueue, GeneralModel& general)
    : general_(general), contentModel_(ContentModel::create(mainQueue, general)) {}

MainContent ContentView::content() const {
  const helper_link::XPCManager& manager = *general_.xpcmanager();
  return mainContent(general_.processor(), manager.isAuthorized(), manager.isUpdateNeeded());
}

std::optional<MainContent> ContentView::press() {
  // Looked up once: a reply may change it at any moment.
  const MainContent shown = content();
  if (mainContentText(shown, hideUpdateButton_).button.empty()) return std::nullopt;
  if (shown == MainContent::update) {
    hideUpdateButton_ = true;
    general_.xpcmanager()->updateHelper();
  } else {
    general_.xpcmanager()->installHelper();
  }
  return shown;
}

}  // namespace pallimo::app
