// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "ui/widgets/main/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QTimerEvent>
#include <QWindow>
#include <utility>

#include "ui/widgets/basics/drag_area.h"
#include "ui/widgets/main/content_screen.h"
#include "ui/widgets/main/main_title_widget.h"
#include "ui/widgets/main/more_button.h"
#include "ui/widgets/panels/live_content.h"

namespace pallimo::ui::widgets {
namespace {

constexpr QPoint kTitlePlace(14, 8);
constexpr QPoint kMorePlace(344, 10);
// A window that is dragged reports many places; the last one counts.
constexpr int kPlaceDelayMs = 300;

DesktopArea areaOf(const QRect& rect) {
  return {{rect.x(), rect.y()}, rect.width(), rect.height()};
}

std::vector<DesktopArea> screenAreas() {
  std::vector<DesktopArea> areas;
  for (const QScreen* screen : QGuiApplication::screens()) {
    areas.push_back(areaOf(screen->availableGeometry()));
  }
  return areas;
}

}  // namespace

MainWindow::MainWindow(Services services)
    : AppWindow(services.chrome),
      services_(std::move(services)),
      menuBar_(launchedMainMenu(menuBarActions()), *this, services_.chrome.sharesMenuBar),
      header_(new DragArea(this)),
      title_(new MainTitleWidget({}, header_)),
      moreButton_(new MoreButton([this] { return menuRows(); }, header_)),
      screen_(new ContentScreen([this] { press(); }, this)),
      live_(new LiveContent(services_.readout, services_.actions.copyText, this)) {
  setWindowTitle(QStringLiteral("Pallimo"));
  header_->setGeometry(0, 0, kWidth, kHeaderHeight);
  title_->setGeometry(QRect(kTitlePlace, title_->sizeHint()));
  moreButton_->move(kMorePlace);
  // The window itself has the keyboard until Tab asks for a control: else the first one would wear
  // a focus ring from the start.
  setFocusPolicy(Qt::ClickFocus);
  setFocus();
  showColorScheme();
  refresh();
  restorePlace();
}

MainWindow::~MainWindow() { storePlace(); }

MenuBarActions MainWindow::menuBarActions() const {
  const MoreButtonActions& menu = services_.actions.menu;
  const auto inActiveWindow = [](void (*action)(QWidget&)) {
    return [action] {
      if (QWidget* window = QApplication::activeWindow()) action(*window);
    };
  };
  return {.showSettings = menu.showSettings,
          .quit = menu.quit,
          .closeWindow = inActiveWindow([](QWidget& window) { window.close(); }),
          .minimizeWindow = inActiveWindow([](QWidget& window) { window.showMinimized(); }),
          .logToFile = menu.logToFile,
          .contactDeveloper = menu.contactDeveloper};
}

std::vector<MenuItem> MainWindow::menuRows() const {
  MoreButtonActions actions = services_.actions.menu;
  actions.showSettings = [this] { menuBar_.action(MenuBarRole::settings)->trigger(); };
  return moreButtonMenu(actions, services_.actions.isHelperAuthorized(), services_.random);
}

bool MainWindow::isShown() const { return isVisible() && !isMinimized(); }

// A window on a desktop that nobody looks at is still shown, only not exposed.
bool MainWindow::isSeen() const { return isShown() && windowHandle()->isExposed(); }

void MainWindow::contentChanged() {
  isStale_ = true;
  if (isQueued_) {
    return;
  }
  isQueued_ = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        isQueued_ = false;
        menuBar_.refresh();
        moreButton_->refreshMenu();
        if (isSeen()) {
          refresh();
        }
      },
      Qt::QueuedConnection);
}

void MainWindow::refresh() {
  isStale_ = false;
  showContent(services_.content());
}

void MainWindow::showContent(MainWindowContent content) {
  const bool isLive = content.screen == MainContent::live;
  const bool hasHeader = content.screen != MainContent::refusal;
  if (content.title != shownTitle_) {
    shownTitle_ = content.title;
    title_->setContent(content.title);
  }
  if (isLive) {
    live_->setPanels(std::move(content.panels));
  } else {
    screen_->setTexts({content.heading, content.text, content.button, !hasHeader});
  }
  header_->setVisible(hasHeader);
  live_->setVisible(isLive);
  screen_->setVisible(!isLive);
  QWidget* const shown = isLive ? static_cast<QWidget*>(live_) : screen_;
  const int top = hasHeader ? kHeaderHeight : 0;
  shown->setGeometry(QRect(QPoint(0, top), shown->sizeHint()));
  setFixedSize(kWidth, top + shown->height());
}

void MainWindow::press() {
  services_.actions.press();
  refresh();
}

void MainWindow::showColorScheme() {
  const ColorScheme scheme = colorScheme();
  menuBar_.setColorScheme(scheme);
  title_->setColorScheme(scheme);
  moreButton_->setColorScheme(scheme);
  screen_->setColorScheme(scheme);
  live_->setColorScheme(scheme);
}

bool MainWindow::event(QEvent* event) {
  const bool isBackInSight =
      event->type() == QEvent::Show || event->type() == QEvent::WindowStateChange;
  const bool result = AppWindow::event(event);
  if (event->type() == QEvent::Show) {
    windowHandle()->installEventFilter(this);
  }
  if (isBackInSight && isStale_ && isShown()) {
    refresh();
  }
  return result;
}

bool MainWindow::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Expose && isStale_ && isSeen()) {
    refresh();  // before it is painted
  }
  return AppWindow::eventFilter(object, event);
}

void MainWindow::contextMenuEvent(QContextMenuEvent* event) { menuBar_.popUp(event->globalPos()); }

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F10) {
    menuBar_.popUp(mapToGlobal(QPoint(0, kHeaderHeight / 2)));
    return;
  }
  AppWindow::keyPressEvent(event);
}

void MainWindow::moveEvent(QMoveEvent*) {
  if (isShown()) {
    placeTimer_.start(kPlaceDelayMs, this);
  }
}

void MainWindow::closeEvent(QCloseEvent*) { services_.actions.closed(); }

void MainWindow::hideEvent(QHideEvent*) { storePlace(); }

void MainWindow::timerEvent(QTimerEvent* event) {
  if (event->timerId() == placeTimer_.timerId()) {
    storePlace();
  }
}

void MainWindow::restorePlace() {
  const auto text = services_.place.load();
  const auto stored = text ? windowPlaceFrom(*text) : std::nullopt;
  if (stored) {
    const WindowPlace place = placeOnScreens({*stored, width(), height()}, screenAreas());
    move(place.x, place.y);
  }
}

void MainWindow::storePlace() {
  if (placeTimer_.isActive()) {
    placeTimer_.stop();
    services_.place.store(windowPlaceText({x(), y()}));
  }
}

}  // namespace pallimo::ui::widgets
