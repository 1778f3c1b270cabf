// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <set>

#include "end_to_end/app_fixture.h"
#include "end_to_end/screen/virtual_screen.h"
#include "end_to_end/window/line_color.h"
#include "logging/log_file_data.h"
#include "ui/palette.h"

namespace pallimo::end_to_end {
namespace {

using ui::ColorScheme;

/// The real program on a real screen, moved by a real mouse and keyboard.
class AppOnScreen : public AppTest {
 protected:
  AppOnScreen() {
    for (const char* folder : {"Desktop", "run"}) fs::create_directory(root_ / folder);
    fs::permissions(root_ / "run", fs::perms::owner_all);
  }

  void startApp(Texts arguments = {}) {
    arguments.insert(arguments.begin(), {"--state-dir", stateFolder(), "--speed", "10"});
    app_ =
        start(arguments, {"QT_QPA_PLATFORM=xcb", "DISPLAY=" + screen_.display(),
                          "HOME=" + root_.string(), "XDG_RUNTIME_DIR=" + (root_ / "run").string(),
                          "DBUS_SESSION_BUS_ADDRESS=disabled:"});
    ASSERT_TRUE(soon([this] { return screen_.window("Pallimo").has_value(); }))
        << app_->account() << "on the screen " << screen_.display() << ":\n"
        << screen_.ask("search --name .");
    screen_.giveKeyboardTo(window());
  }
  /// The program ends by itself, without a fault and without a complaint.
  void expectToEnd() {
    EXPECT_EQ(app_->exitStatus(), 0);
    EXPECT_EQ(app_->errorText(), "");
  }

  /// The next thing that the user is told, on the console for want of a desktop; empty when none
  /// is.
  std::string nextNotice() const {
    while (const auto line = app_->readLine()) {
      if (line->rfind("Logging ", 0) == 0) return *line;
    }
    return {};
  }

  VirtualScreen::Window window() const {
    return screen_.window("Pallimo").value_or(VirtualScreen::Window{});
  }
  static bool soon(const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + kGenerous;
    while (!holds()) {
      if (std::chrono::steady_clock::now() > end) return false;
      poll(nullptr, 0, 20);  // the program works meanwhile
    }
    return true;
  }

  struct Area {
    int left = 0, top = 0, right = 0, bottom = 0;
    int width() const { return right - left; }
  };
  /// The panels as they stand on the screen, top to bottom.
  std::vector<Area> panels() const {
    std::vector<Area> areas;
    const auto shown = window();
    int top = shown.y + 64;
    for (const int height : {160, 160, 140, 140}) {
      areas.push_back({shown.x + 10, top, shown.x + 370, top + height});
      top += height + 8;
    }
    return areas;
  }
  std::set<std::uint32_t> colorsIn(const Area& area) const {
    const ScreenPicture picture = screen_.picture();
    std::set<std::uint32_t> colors;
    for (int y = area.top; y < area.bottom; ++y) {
      for (int x = area.left; x < area.right; ++x) colors.insert(picture.at(x, y));
    }
    return colors;
  }
  bool showsLine(const Area& area, ui::SeriesColor series) const {
    const auto found = colorsIn(area);
    return std::any_of(found.begin(), found.end(), [series](std::uint32_t pixel) {
      return isOfLine(pixel, colors().series(series), colors().panel);
    });
  }
  /// Around everything that has that colour; empty when nothing has.
  Area areaOf(std::uint32_t color) const {
    const ScreenPicture picture = screen_.picture();
    Area area{picture.width(), picture.height(), 0, 0};
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (picture.at(x, y) != color) continue;
        area = {std::min(area.left, x), std::min(area.top, y), std::max(area.right, x + 1),
                std::max(area.bottom, y + 1)};
      }
    }
    return area;
  }
  static const ui::Palette& colors() { return ui::palette(ColorScheme::light); }

  void clickInstall() const {
    const std::uint32_t accent = asPixel(colors().accent);
    ASSERT_TRUE(soon([&] { return areaOf(accent).width() > 0; }));
    const Area area = areaOf(accent);
    screen_.click((area.left + area.right) / 2, (area.top + area.bottom) / 2);
  }
  bool showsLines() const {
    return soon([this] {
      if (window().height <= 600) return false;
      const auto areas = panels();
      return std::all_of(areas.begin(), areas.end(), [this](const Area& area) {
        const auto found = colorsIn(area);
        return found.count(asPixel(colors().panel)) == 1 && showsLine(area, ui::SeriesColor::blue);
      });
    });
  }

  const VirtualScreen screen_;
  std::unique_ptr<AppProcess> app_;
};

TEST_F(AppOnScreen, InstallsByAClickAndShowsItsPanels) {
  startApp();
  EXPECT_EQ(window().width, 380);
  EXPECT_EQ(window().height, 224);
  clickInstall();
  ASSERT_TRUE(showsLines());
  EXPECT_EQ(window().width, 380);
  screen_.key("ctrl+q");
  expectToEnd();
}

TEST_F(AppOnScreen, ShowsEachPanelInItsColours) {
  installHelper();
  startApp();
  ASSERT_TRUE(showsLines());
  // Pink stands for the GPU, which frequency and utilization show on demand.
  using Color = ui::SeriesColor;
  const std::vector<std::vector<Color>> expected = {
      {Color::blue, Color::cyan, Color::orange, Color::pink},
      {Color::blue, Color::cyan},
      {Color::cyan, Color::blue, Color::purple, Color::pink},
      {Color::blue, Color::cyan}};
  const auto areas = panels();
  for (std::size_t panel = 0; panel < areas.size(); ++panel) {
    for (const Color color : expected[panel]) {
      EXPECT_TRUE(soon([&] { return showsLine(areas[panel], color); })) << panel;
    }
  }
  const auto shown = window();
  EXPECT_EQ(screen_.picture().at(shown.x + 4, shown.y + 300), asPixel(colors().window));
  screen_.key("ctrl+q");
  expectToEnd();
}

TEST_F(AppOnScreen, RecordsALogByTheShortcut) {
  installHelper();
  startApp();
  ASSERT_TRUE(showsLines());
  // A sample may come between two keys or not: what counts is that one does, sooner or later.
  std::size_t rows = 0;
  ASSERT_TRUE(soon([&] {
    screen_.key("ctrl+l");
    EXPECT_EQ(nextNotice(),
              "Logging started: The log file will be written when logging is stopped.");
    screen_.key("ctrl+l");
    const std::string ended = nextNotice();
    const std::string begin = "Logging ended: Saved at: " + (root_ / "Desktop/PwrData ").string();
    EXPECT_EQ(ended.rfind(begin, 0), 0u) << ended;
    if (HasFailure()) return true;
    std::istringstream text(textOf(ended.substr(ended.find('/'))));
    std::string line;
    std::getline(text, line);
    EXPECT_EQ(line, logging::kCsvHeader);
    for (; std::getline(text, line); ++rows) EXPECT_EQ(columnsOf(line).size(), 18u);
    return rows > 0;
  }));
  screen_.key("ctrl+q");
  expectToEnd();
}

TEST_F(AppOnScreen, QuitEndsTheHelperToo) {
  installHelper();
  startApp();
  ASSERT_TRUE(showsLines());
  screen_.key("ctrl+q");
  expectToEnd();
  expectNothingLeft();
}

TEST_F(AppOnScreen, ClosedWindowEndsTheProgram) {
  startApp();
  screen_.key("ctrl+w");
  expectToEnd();
}

TEST_F(AppOnScreen, OnAnotherProcessorTheProgramRunsUntilItIsToldToEnd) {
  installHelper();
  startApp({"--machine", recording({std::nullopt}, 7)});
  EXPECT_EQ(window().height, 160);  // the refusal's
  EXPECT_TRUE(helpersOf().empty());
  app_->send(SIGTERM);
  expectToEnd();
  EXPECT_TRUE(helpersOf().empty());
}

TEST_F(AppOnScreen, SettingsOpenBesideTheWindow) {
  startApp();
  screen_.key("ctrl+comma");
  EXPECT_TRUE(soon([this] { return screen_.window("Settings").has_value(); }));
  screen_.key("ctrl+q");
  expectToEnd();
}

}  // namespace
}  // namespace pallimo::end_to_end
