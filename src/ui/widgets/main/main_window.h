// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <QBasicTimer>
#include <functional>
#include <vector>

#include "ports/random_numbers.h"
#include "ui/main_window_content.h"
#include "ui/widgets/main/main_menu_bar.h"
#include "ui/widgets/panels/panel_widget.h"
#include "ui/widgets/windows/app_window.h"
#include "ui/window_place.h"

namespace pallimo::ui::widgets {

class ContentScreen;
class LiveContent;
class MainTitleWidget;
class MoreButton;

/// The app's one main window: the header with the more button, below it the panels or what has to
/// be done first. As large as its content. Main thread.
///
/// It looks up what to show when it is told of a change, once for all changes of one turn of the
/// event loop; while it is hidden, minimised or on a desktop that nobody looks at, when it is seen
/// again.
class MainWindow final : public AppWindow {
 public:
  struct Services {
    std::function<MainWindowContent()> content;
    MainWindowActions actions;
    PanelWidget::ReadoutSource readout;  ///< none: nothing is shown under the pointer
    WindowPlaceStore place;
    ports::RandomNumbers& random;  ///< outlives the window
    WindowChrome chrome;
  };

  explicit MainWindow(Services services);
  ~MainWindow() override;

  static constexpr int kWidth = 380;
  static constexpr int kHeaderHeight = 64;

  /// Models, settings, the helper's state or the log's switch may have changed.
  void contentChanged();

  MainMenuBar& mainMenuBar() { return menuBar_; }
  MoreButton& moreButton() { return *moreButton_; }
  /// Panels are there when the window was live once.
  LiveContent& liveContent() { return *live_; }

 protected:
  void showColorScheme() override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  MenuBarActions menuBarActions() const;
  std::vector<MenuItem> menuRows() const;
  bool isShown() const;
  bool isSeen() const;
  void refresh();
  void showContent(MainWindowContent content);
  void press();
  void restorePlace();
  void storePlace();

  const Services services_;
  MainMenuBar menuBar_;
  // Children.
  QWidget* header_;
  MainTitleWidget* title_;
  MoreButton* moreButton_;
  ContentScreen* screen_;
  LiveContent* live_;

  MainTitleContent shownTitle_;
  bool isStale_ = true;     ///< what is shown may be older than what there is
  bool isQueued_ = false;   ///< somebody will look before long
  QBasicTimer placeTimer_;  ///< runs while the place is not stored
};

}  // namespace pallimo::ui::widgets
