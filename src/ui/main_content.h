// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <string_view>

namespace pallimo::ui {

/// What the main window shows at its top level; --headless acts on the same answer.
enum class MainContent {
  refusal,  ///< the processor is not Apple silicon
  live,     ///< figures and graphs
  update,   ///< the helper is out of date: a button updates it
  install,  ///< there is no helper that answers: a button installs it
};

/// The first of the conditions that holds, in the order of the enumeration. Pure.
constexpr MainContent mainContent(bool isAppleSilicon, bool isAuthorized, bool isUpdateNeeded) {
  if (!isAppleSilicon) return MainContent::refusal;
  if (isAuthorized) return MainContent::live;
  return isUpdateNeeded ? MainContent::update : MainContent::install;
}

/// A main content in words, top to bottom. An empty text stands for a part that is not there.
struct MainContentText {
  std::string_view heading;
  std::string_view text;
  std::string_view button;
  bool operator==(const MainContentText&) const = default;
};

/// What stands on the screen, to the letter: the odd wording of the helper's two messages is meant,
/// and so are their empty lines. Neither the title header, below which every content but the
/// refusal stands, nor the panels are any of it. Pure.
constexpr MainContentText mainContentText(MainContent content, bool hideUpdateButton) {
  switch (content) {
    case MainContent::refusal:
      return {"", "This app is only for Apple Silicon Cores.\nIt is not working on Intel Cores",
              ""};
    case MainContent::live:
      break;
    case MainContent::update:
      return {"", "\nThe Pallimo Powermetrics Helper need being updated\n",
              hideUpdateButton ? "" : "Update Helper"};
    case MainContent::install:
      return {"Welcome", "\nBefore to start you need to install the Pallimo Powermetrics Helper\n",
              "Install Helper"};
  }
  return {"", "", ""};
}

}  // namespace pallimo::ui
