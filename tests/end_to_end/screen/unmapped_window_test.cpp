// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "end_to_end/screen/virtual_screen.h"
#include "end_to_end/window/event_count.h"
#include "end_to_end/window/window_app.h"
#include "ui/widgets/panels/graph_widget.h"

namespace pallimo::end_to_end {
namespace {

/// First of all there is a screen. One for the whole process: Qt stays with it to the end, and
/// stops the program when it goes.
struct HasScreen {
  HasScreen() : screen(only()) { setenv("DISPLAY", screen.display().c_str(), 1); }
  static const VirtualScreen& only() {
    static const VirtualScreen screen;
    return screen;
  }
  const VirtualScreen& screen;
};

/// The window of an app in this process, which another program takes from the screen, as a window
/// manager does with the windows of a desktop that nobody looks at. The app itself did not hide it.
class UnmappedWindow : protected HasScreen, public WindowApp {
 protected:
  UnmappedWindow() : WindowApp("xcb") {}

  void unmap() {
    id_ = screen.window("Pallimo").value().id;
    screen.ask("windowunmap " + id_);
    ASSERT_TRUE(soon([this] { return !window().windowHandle()->isExposed(); }));
  }
  void mapAgain() const { screen.ask("windowmap " + id_); }

 private:
  std::string id_;
};

TEST_F(UnmappedWindow, PaintsAndLooksAtNothing) {
  startLive();
  unmap();
  const EventCount paints(window(), QEvent::Paint);
  const EventCount graphPaints(graph(kPower), QEvent::Paint);
  const ui::Panel last = panel(kPower);
  ASSERT_TRUE(samples(3));
  widgets::settle();
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(paints.count(), 0);
  EXPECT_EQ(graphPaints.count(), 0);
  EXPECT_EQ(panel(kPower), last);
}

TEST_F(UnmappedWindow, ShowsTheNewestWhenItIsBack) {
  startLive();
  unmap();
  const EventCount graphPaints(graph(kPower), QEvent::Paint);
  const std::size_t before = panel(kPower).graph.datas.at(0).data.size();
  ASSERT_TRUE(samples(3));
  mapAgain();
  EXPECT_TRUE(soon([&] { return graphPaints.count() > 0; }));
  EXPECT_GE(panel(kPower).graph.datas.at(0).data.size(), before + 3);
  EXPECT_TRUE(samples(2));
}

}  // namespace
}  // namespace pallimo::end_to_end
