// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QMenu>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "analytics/silent_http_client.h"
#include "app/models/shared_general_model.h"
#include "app/start/make_platform.h"
#include "app/window/system_chrome.h"
#include "app/window/window_run.h"
#include "end_to_end/helper_fixture.h"
#include "ui/widgets/basics/push_button.h"
#include "ui/widgets/main/main_window.h"
#include "ui/widgets/main/more_button.h"
#include "ui/widgets/panels/live_content.h"
#include "ui/widgets/panels/panel_widget.h"
#include "ui/widgets/settings/settings_window.h"
#include "unit/ui/widgets/qt_messages.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::end_to_end {

namespace widgets = ui::widgets;

// The panels, top to bottom.
inline constexpr std::size_t kPower = 0;
inline constexpr std::size_t kFrequency = 1;
inline constexpr std::size_t kTemperature = 2;
inline constexpr std::size_t kUtilization = 3;

/// Takes the links that the app opens, in the desktop's place: Qt hands them to a slot, and a
/// browser has one.
class LinkTaker final : public QTextBrowser {
 public:
  LinkTaker() {
    for (const char* scheme : kSchemes) QDesktopServices::setUrlHandler(scheme, this, "setSource");
  }
  ~LinkTaker() override {
    for (const char* scheme : kSchemes) QDesktopServices::unsetUrlHandler(scheme);
  }

  QStringList taken;

 protected:
  void doSetSource(const QUrl& url, QTextDocument::ResourceType) override {
    taken.append(url.toString());
  }

 private:
  static constexpr const char* kSchemes[] = {"https", "mailto"};
};

/// The app with its window on a screen that nobody sees, composed as the program composes it, in
/// this process: real settings, real link, and a real helper beside it. The test is the user. The
/// user's home is a folder of the test.
class WindowApp : public HelperFolderTest {
 protected:
  /// `screen` is the one that Qt shows windows on: unless it is said, one that is none.
  explicit WindowApp(const char* screen = "offscreen") {
    // A desktop of whoever runs the tests shall not notice, nor keep their choices of folders.
    setenv("QT_QPA_PLATFORM", screen, 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    setenv("HOME", home.c_str(), 1);
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) unsetenv(name);
    fs::create_directory(desktop());
    widgets::testApplication();
    links_ = std::make_unique<LinkTaker>();
    options.stateDir = folder.path();
    options.speed = 10;
  }
  ~WindowApp() override {
    endApp();
    fs::remove_all(home);
    EXPECT_EQ(widgets::QtMessages::unexpected(), QStringList());
  }

  /// The app starts and shows its window.
  void startApp() {
    auto made = app::makePlatform(
        options, {.url = "", .client = std::make_unique<analytics::SilentHttpClient>()});
    const auto* error = std::get_if<app::StartError>(&made);
    ASSERT_EQ(error, nullptr) << error->message;
    owner_ = std::get<std::unique_ptr<app::PlatformOwner>>(std::move(made));
    shared_.emplace(owner_->platform());
    run_ = std::make_unique<app::WindowRun>(owner_->platform(), general(), app::systemChrome());
    general().sampleRows()->addReceiver([count = rows_](const logging::LogRow&) { ++*count; });
    widgets::showAndWait(window());
    // Elsewhere a window manager would have to be asked, and there is none.
    if (QGuiApplication::platformName() == "offscreen") activate(window());
  }
  /// The app's event loop ends, as it does when the user quits. The link is still there.
  static void endEventLoop() {
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    EXPECT_EQ(QCoreApplication::exec(), 0);
  }
  /// The app ends, in the program's order.
  void endApp() {
    if (!run_) return;
    endEventLoop();
    run_.reset();
    owner_->endLink();
    shared_.reset();
    owner_.reset();
  }
  void restartApp() {
    endApp();
    startApp();
  }
  /// The same with a helper that answers: live panels with a few samples.
  void startLive() {
    installHelper();
    startApp();
    ASSERT_TRUE(becomesLive());
    ASSERT_TRUE(samples(3));
  }

  app::GeneralModel& general() const { return app::SharedGeneralModel::get(); }
  const app::Platform& platform() const { return owner_->platform(); }
  widgets::MainWindow& window() const { return run_->window(); }
  widgets::SettingsWindow& settings() const { return run_->settings(); }
  const widgets::PanelWidget& panelWidget(std::size_t index) const {
    return *window().liveContent().panels().at(index);
  }
  widgets::GraphWidget& graph(std::size_t index) const {
    return window().liveContent().panels().at(index)->graph();
  }
  const ui::Panel& panel(std::size_t index) const { return panelWidget(index).panel(); }
  const QStringList& openedLinks() const { return links_->taken; }
  fs::path desktop() const { return home / "Desktop"; }

  /// The app runs until it holds; false when it does not in time.
  static bool soon(const std::function<bool()>& holds) { return QTest::qWaitFor(holds, kPatience); }
  bool becomesLive() const {
    return soon([this] { return window().liveContent().isVisible(); });
  }
  bool becomesInstallScreen() const {
    return soon([this] { return buttonText() == "Install Helper"; });
  }
  /// That many more samples arrive.
  bool samples(std::size_t count) const {
    return soon([this, wanted = *rows_ + count] { return *rows_ >= wanted; });
  }

  /// The button of the screen that is shown; null when there is none.
  widgets::PushButton* button() const {
    for (auto* child : window().findChildren<QWidget*>()) {
      auto* found = dynamic_cast<widgets::PushButton*>(child);
      if (found != nullptr && found->isVisible()) return found;
    }
    return nullptr;
  }
  QString buttonText() const { return button() == nullptr ? QString() : button()->text(); }

  /// At the window, as a mouse does: what lies over the widget would have it.
  static void click(QWidget& widget, Qt::MouseButton mouseButton = Qt::LeftButton) {
    QTest::mouseClick(widget.window()->windowHandle(), mouseButton, Qt::NoModifier,
                      widget.mapTo(widget.window(), widget.rect().center()));
  }
  /// A key goes to whatever has the keyboard.
  static void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWindow* const target = QGuiApplication::focusWindow();
    ASSERT_NE(target, nullptr);
    QTest::keyClick(target, static_cast<Qt::Key>(key), modifiers);
  }
  static void activate(QWidget& shown) {
    shown.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shown));
  }

  /// Tab by Tab; false when it never comes there.
  static bool goByKeysTo(const QWidget& control) {
    for (int keys = 0; keys < 10 && QApplication::focusWidget() != &control; ++keys) {
      press(Qt::Key_Tab);
    }
    return QApplication::focusWidget() == &control;
  }
  void openSettings() const {
    activate(window());
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&settings()));
  }

  QMenu* openMoreMenu() const {
    click(window().moreButton());
    return window().moreButton().menu();
  }
  static QAction* actionNamed(const QList<QAction*>& actions, const QString& title) {
    for (QAction* action : actions) {
      if (action->text() == title) return action;
    }
    return nullptr;
  }
  /// Chooses a row of the more button's menu by mouse; one that is grey leaves the menu open.
  void choose(const QString& title) const { choose(*openMoreMenu(), title); }
  static void choose(QMenu& menu, const QString& title) {
    QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier,
                      menu.actionGeometry(actionNamed(menu.actions(), title)).center());
    widgets::settle();
  }

  app::Options options;
  const fs::path home = makeFolder();

 private:
  static constexpr int kPatience = 60'000;

  widgets::QtMessages messages_;
  std::unique_ptr<LinkTaker> links_;
  std::unique_ptr<app::PlatformOwner> owner_;
  std::optional<app::SharedGeneralModel> shared_;
  std::unique_ptr<app::WindowRun> run_;
  /// The delivery thread counts.
  const std::shared_ptr<std::atomic<std::size_t>> rows_ =
      std::make_shared<std::atomic<std::size_t>>(0);
};

}  // namespace pallimo::end_to_end
