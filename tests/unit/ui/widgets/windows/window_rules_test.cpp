// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/windows/window_rules.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QMenu>
#include <algorithm>
#include <vector>

#include "ui/widgets/windows/window_chrome.h"
#include "unit/ui/widgets/qt_messages.h"
#include "unit/ui/widgets/shown_widget.h"
#include "unit/ui/widgets/test_application.h"

namespace pallimo::ui::widgets {
namespace {

/// A frameless system's rules, and what they were applied to.
class WindowRulesTest : public testing::Test {
 protected:
  ~WindowRulesTest() override { EXPECT_EQ(QtMessages::unexpected(), QStringList()); }

  void show(QWidget& window) {
    window.resize(100, 100);
    showAndWait(window);
  }
  /// How often they were applied to that one.
  long applied(const QWidget& window) const {
    return std::count(applied_.begin(), applied_.end(), &window);
  }
  static void expectNeitherZoomedNorFullScreen(const QWidget& window) {
    EXPECT_EQ(window.windowState() & (Qt::WindowFullScreen | Qt::WindowMaximized),
              Qt::WindowStates());
  }

  [[maybe_unused]] const QApplication& application_ = testApplication();  // before the rules
  const WindowChrome chrome_ = framelessChrome();
  std::vector<const QWidget*> applied_;
  QtMessages messages_;
  const WindowRules rules_{[this](QWidget& window) {
    applied_.push_back(&window);
    chrome_.applyRules(window);
  }};
};

TEST_F(WindowRulesTest, AreAppliedWhenAWindowIsShown) {
  QWidget window(nullptr, chrome_.flags);
  EXPECT_EQ(applied(window), 0);
  show(window);
  EXPECT_GT(applied(window), 0);
}

TEST_F(WindowRulesTest, AreAppliedEachTimeAWindowIsAboutToBeRedrawn) {
  QWidget window(nullptr, chrome_.flags);
  show(window);
  for (int redraw = 0; redraw < 3; ++redraw) {
    const long before = applied(window);
    window.update();
    settle();
    EXPECT_GT(applied(window), before);
  }
}

TEST_F(WindowRulesTest, HoldForEveryWindow) {
  QWidget window(nullptr, chrome_.flags);
  QDialog dialog(&window);
  show(window);
  show(dialog);
  for (QWidget* shown : {&window, static_cast<QWidget*>(&dialog)}) {
    for (const auto state : {Qt::WindowFullScreen, Qt::WindowMaximized}) {
      shown->setWindowState(state);
      settle();
      expectNeitherZoomedNorFullScreen(*shown);
    }
  }
}

TEST_F(WindowRulesTest, LetNoWindowBeShownZoomed) {
  QWidget window(nullptr, chrome_.flags);
  window.showMaximized();
  settle();
  expectNeitherZoomedNorFullScreen(window);
}

TEST_F(WindowRulesTest, LeaveAWindowMinimised) {
  QWidget window(nullptr, chrome_.flags);
  show(window);
  window.showMinimized();
  settle();
  EXPECT_TRUE(window.isMinimized());
}

TEST_F(WindowRulesTest, PassByMenusAndWhatLiesInAWindow) {
  QWidget window(nullptr, chrome_.flags);
  QWidget inside(&window);
  QMenu menu(&window);
  menu.addAction("Row");
  show(window);
  menu.popup(window.pos());
  settle();
  menu.close();
  EXPECT_EQ(applied(inside), 0);
  EXPECT_EQ(applied(menu), 0);
}

TEST_F(WindowRulesTest, EndWithTheirOwner) {
  QWidget window(nullptr, chrome_.flags);
  int more = 0;
  {
    const WindowRules second([&more](QWidget&) { ++more; });
  }
  show(window);
  EXPECT_EQ(more, 0);
}

}  // namespace
}  // namespace pallimo::ui::widgets
