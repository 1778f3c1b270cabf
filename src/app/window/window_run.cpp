// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/window/window_run.h"

#include <QApplication>
#include <QClipboard>
#include <string>
#include <utility>

#include "app/window_content.h"
#include "base/notification_centre.h"
#include "ui/readout.h"
#include "ui/widgets/windows/app_icon.h"

namespace pallimo::app {

namespace {

constexpr std::string_view kPlaceKey = "mainWindowPlace";

}  // namespace

WindowRun::WindowRun(const Platform& platform, GeneralModel& general,
                     ui::widgets::WindowChrome chrome)
    : platform_(platform),
      chrome_(std::move(chrome)),
      general_(general),
      view_(platform.mainQueue, general),
      times_(std::make_shared<ui::SampleTimes>()),
      rules_(chrome_.applyRules),
      window_(windowServices()),
      settings_(settingsServices()),
      shown_(std::make_shared<ui::widgets::MainWindow*>(&window_)) {
  QApplication::setWindowIcon(ui::widgets::appIcon());
  // A desktop without icons of windows finds the entry's by this name.
  QApplication::setDesktopFileName(QStringLiteral("pallimo"));
  window_.mainMenuBar().addKeysTo(settings_);
  followSamples();
  follow();
  closeHelperAtTheEnd();
}

WindowRun::~WindowRun() { *shown_ = nullptr; }

ui::widgets::MainWindow::Services WindowRun::windowServices() {
  return {.content =
              [this] {
                shownTimes_ = times_->newestFirst();
                return windowContent(view_, general_, platform_.defaults, platform_.randomNumbers);
              },
          .actions = actions(),
          .readout =
              [this](double x, double width, const ui::Panel& panel) {
                return ui::readoutAt(x, width, panel, shownTimes_, platform_.clock.now());
              },
          .place = {.load = [this] { return platform_.defaults.textForKey(kPlaceKey); },
                    .store =
                        [this](const std::string& text) {
                          platform_.defaults.setText(kPlaceKey, text);
                        }},
          .random = platform_.randomNumbers,
          .chrome = chrome_};
}

ui::widgets::SettingsWindow::Services WindowRun::settingsServices() const {
  ui::widgets::LogFolderServices folders;
  folders.modelFolder = [this] { return general_.logfileModel()->folderUseForSaving(); };
  folders.desktopFolder = [this] { return platform_.files.desktopFolder(); };
  return {platform_.defaults, platform_.mainQueue, std::move(folders), chrome_};
}

ui::MainWindowActions WindowRun::actions() {
  ui::MainWindowActions actions;
  actions.press = [this] { view_.press(); };
  actions.menu = {
      .checkForUpdates = [this] { general_.sparkle()->checkForUpdates(); },
      .uninstallHelper = [this] { general_.xpcmanager()->uninstallHelper(); },
      .logToFile = {.isOn = [this] { return general_.logfileModel()->isLogEnabled(); },
                    .setOn = [this](bool isOn) { general_.logfileModel()->setLogEnabled(isOn); }},
      .showSettings = [this] { settings_.present(); },
      .openStorePage = [this] { general_.openStorePage(); },
      .openSocialPage = [this] { general_.openSocialPage(); },
      .contactDeveloper = [this] { general_.contactDeveloper(); },
      .quit = [] { QApplication::quit(); }};
  actions.isHelperAuthorized = [this] { return general_.xpcmanager()->isAuthorized(); };
  actions.copyText = [](const std::string& text) {
    QApplication::clipboard()->setText(QString::fromStdString(text));
  };
  actions.closed = [this] { settings_.close(); };
  return actions;
}

void WindowRun::closeHelperAtTheEnd() {
  QObject::connect(
      qApp, &QCoreApplication::aboutToQuit, &window_,
      [&general = general_] { general.applicationWillTerminate(); }, Qt::SingleShotConnection);
}

void WindowRun::followSamples() {
  // Before the row's "UpdateView" is queued, so that the window never shows a sample without a
  // time.
  general_.sampleRows()->addReceiver(
      [times = times_](const logging::LogRow& row) { times->add(row.time); });
  subscriptions_.push_back(platform_.notifications.observe(base::notification::kClearData,
                                                           [times = times_] { times->clear(); }));
}

void WindowRun::follow() {
  // Some of them publish on the thread that changed them.
  const auto look = [&queue = platform_.mainQueue, shown = shown_] {
    queue.async([shown] {
      if (*shown != nullptr) (*shown)->contentChanged();
    });
  };
  subscriptions_.push_back(general_.modelPower()->observe(look));
  subscriptions_.push_back(general_.modelFrequency()->observe(look));
  subscriptions_.push_back(general_.modelTemperature()->observe(look));
  subscriptions_.push_back(general_.modelUtilization()->observe(look));
  subscriptions_.push_back(general_.modelMoreButton()->observe(look));
  subscriptions_.push_back(general_.logfileModel()->observe(look));
  subscriptions_.push_back(view_.contentModel()->observe(look));
  subscriptions_.push_back(platform_.defaults.observeChanges(look));
}

}  // namespace pallimo::app
