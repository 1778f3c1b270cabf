// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/window/system_chrome.h"

#include <QGuiApplication>
#include <QWidget>

#include "adapters/macos/objc_adapters.h"

namespace pallimo::app {

ui::widgets::WindowChrome systemChrome() {
  // Any other platform of Qt, such as "offscreen", has no views of the system to change.
  if (QGuiApplication::platformName() != "cocoa") return ui::widgets::framelessChrome();
  // The rules hold for all windows that there ever are.
  [[maybe_unused]] static const bool areRulesKept = (adapters::macos::keepWindowRules(), true);
  return {.flags = Qt::WindowFlags(),
          .applyRules =
              [](QWidget& window) {
                adapters::macos::hideTitleBar(reinterpret_cast<void*>(window.winId()));
              },
          .sharesMenuBar = true};
}

}  // namespace pallimo::app
