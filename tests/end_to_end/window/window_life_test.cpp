// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <QFileDialog>

#include "end_to_end/window/window_app.h"

namespace pallimo::end_to_end {
namespace {

/// What holds for the windows as long as they are there, and what goes with them.
class WindowLife : public WindowApp {
 protected:
  /// The status of the program's event loop, in which that is done; one that does not end is ended.
  static int runWith(const std::function<void()>& action) {
    constexpr int kStillRuns = 1;
    QTimer patience;
    QObject::connect(&patience, &QTimer::timeout, [] { QCoreApplication::exit(kStillRuns); });
    patience.start(std::chrono::minutes(1));
    QTimer::singleShot(0, QCoreApplication::instance(), action);
    return QCoreApplication::exec();
  }
};

TEST_F(WindowLife, ClosesTheHelperWithTheEventLoop) {
  startLive();
  const Process running = helper();
  endEventLoop();
  // The link is still there: a helper that nobody told to close would stay.
  EXPECT_TRUE(running.ends());
}

TEST_F(WindowLife, EndsTheProgramWithTheMainWindow) {
  startApp();
  EXPECT_EQ(runWith([] { press(Qt::Key_W, Qt::ControlModifier); }), 0);
}

TEST_F(WindowLife, TakesTheSettingsAlongWithTheMainWindow) {
  startApp();
  openSettings();
  activate(window());
  EXPECT_EQ(runWith([] { press(Qt::Key_W, Qt::ControlModifier); }), 0);
  EXPECT_FALSE(settings().isVisible());
}

TEST_F(WindowLife, LeavesTheMainWindowWhenTheSettingsAreClosed) {
  startApp();
  openSettings();
  press(Qt::Key_W, Qt::ControlModifier);
  widgets::settle();
  EXPECT_FALSE(settings().isVisible());
  EXPECT_TRUE(window().isVisible());
}

TEST_F(WindowLife, KnowsNeitherZoomNorFullScreenInADialogEither) {
  startApp();
  QFileDialog dialog(&window());
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  widgets::showAndWait(dialog);
  for (const Qt::WindowState state : {Qt::WindowMaximized, Qt::WindowFullScreen}) {
    dialog.setWindowState(state);
    widgets::settle();
    EXPECT_FALSE(dialog.windowState() & state);
  }
}

}  // namespace
}  // namespace pallimo::end_to_end
