// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ui/main_window_content.h"
#include "ui/widgets/basics/push_button.h"
#include "ui/widgets/main/main_window.h"
#include "ui/widgets/main/more_button.h"
#include "ui/widgets/panels/live_content.h"
#include "unit/ui/counting_random.h"
#include "unit/ui/widgets/panels/example_panels.h"
#include "unit/ui/widgets/qt_messages.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {

inline MainWindowContent refusalContent() {
  return {MainContent::refusal,
          "",
          "This app is only for Apple Silicon Cores.\nIt is not working on Intel Cores",
          "",
          {},
          {}};
}

inline MainWindowContent installContent() {
  return {MainContent::install,
          "Welcome",
          "\nBefore to start you need to install the Pallimo Powermetrics Helper\n",
          "Install Helper",
          exampleTitle(),
          {}};
}

inline MainWindowContent updateContent() {
  return {MainContent::update,
          "",
          "\nThe Pallimo Powermetrics Helper need being updated\n",
          "Update Helper",
          exampleTitle(),
          {}};
}

inline MainWindowContent liveContentAt(int moment) {
  return {MainContent::live, "", "", "", exampleTitle(), examplePanels(moment)};
}

/// A main window on an app that only writes down what it is asked to do.
class MainWindowFixture : public testing::Test {
 protected:
  MainWindowFixture() { testApplication(); }
  ~MainWindowFixture() override {
    window_.reset();
    EXPECT_EQ(QtMessages::unexpected(), QStringList());
  }

  /// The window as it is made now; a second one takes the first one's place.
  MainWindow& window() {
    if (!window_) window_ = std::make_unique<MainWindow>(services());
    return *window_;
  }

  MainWindow& shown() {
    showAndWait(window());
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    return window();
  }

  MainWindow& shownWith(const MainWindowContent& content) {
    content_ = content;
    return shown();
  }

  void change(const MainWindowContent& content) {
    content_ = content;
    window().contentChanged();
    settle();
  }

  void endWindow() { window_.reset(); }

  QMenu* openMoreMenu() {
    QTest::mouseClick(&window().moreButton(), Qt::LeftButton);
    return window().moreButton().menu();
  }

  PushButton* shownButton() { return visible<PushButton>(); }

  /// The first of that class that is on the screen. Qt's own search knows no class but its own.
  template <typename Widget>
  Widget* visible() {
    for (auto* child : window().findChildren<QWidget*>()) {
      auto* widget = dynamic_cast<Widget*>(child);
      if (widget != nullptr && widget->isVisible()) return widget;
    }
    return nullptr;
  }

  static QAction* actionNamed(const QList<QAction*>& actions, const QString& title) {
    for (QAction* action : actions) {
      if (action->text() == title) return action;
    }
    return nullptr;
  }

  MainWindowContent content_ = installContent();
  bool isHelperAuthorized_ = true;
  bool isLogEnabled_ = false;
  std::vector<std::string> done_;  ///< what the app was asked to do
  std::optional<std::string> storedPlace_;
  int closed_ = 0;  ///< how often the window told that it was closed
  int looks_ = 0;   ///< how often the window asked for its content
  PanelWidget::ReadoutSource readout_;

 private:
  std::function<void()> note(const char* what) {
    return [this, what] { done_.push_back(what); };
  }

  MainWindow::Services services() {
    const SwitchBinding log{[this] { return isLogEnabled_; },
                            [this](bool isOn) { isLogEnabled_ = isOn; }};
    MainWindowActions actions{[this] {
                                done_.push_back("press");
                                if (content_.screen == MainContent::update) content_.button = "";
                              },
                              {note("check"), note("uninstall"), log, note("settings"),
                               note("store"), note("social"), note("contact"), note("quit")},
                              [this] { return isHelperAuthorized_; },
                              [this](const std::string& text) { done_.push_back(text); },
                              [this] { ++closed_; }};
    return {[this] {
              ++looks_;
              return content_;
            },
            actions,
            readout_,
            {[this] { return storedPlace_; }, [this](const std::string& t) { storedPlace_ = t; }},
            random_,
            framelessChrome()};
  }

  CountingRandom random_;
  QtMessages messages_;
  std::unique_ptr<MainWindow> window_;
};

}  // namespace pallimo::ui::widgets
