// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace pallimo::end_to_end {

/// What a screen shows at one moment.
class ScreenPicture {
 public:
  /// From the dump format of the X window system: a head of big-endian words, a table of colours,
  /// rows of pixels.
  explicit ScreenPicture(std::string dump) : bytes_(std::move(dump)) {
    pixels_ = word(kHeaderSize) + kColorSize * word(kColors);
  }

  int width() const { return static_cast<int>(word(kWidth)); }
  int height() const { return static_cast<int>(word(kHeight)); }
  /// As 0xRRGGBB.
  std::uint32_t at(int x, int y) const {
    const std::size_t place = pixels_ + static_cast<std::size_t>(y) * word(kBytesPerLine) +
                              static_cast<std::size_t>(x) * 4;
    return byte(place + 2) << 16 | byte(place + 1) << 8 | byte(place);
  }

 private:
  // Places of words in the head.
  static constexpr std::size_t kHeaderSize = 0;
  static constexpr std::size_t kWidth = 4;
  static constexpr std::size_t kHeight = 5;
  static constexpr std::size_t kBytesPerLine = 12;
  static constexpr std::size_t kColors = 19;
  static constexpr std::size_t kColorSize = 12;

  std::uint32_t byte(std::size_t place) const {
    return static_cast<unsigned char>(bytes_.at(place));
  }
  std::uint32_t word(std::size_t number) const {
    const std::size_t place = number * 4;
    return byte(place) << 24 | byte(place + 1) << 16 | byte(place + 2) << 8 | byte(place + 3);
  }

  std::string bytes_;
  std::size_t pixels_ = 0;
};

/// An X server of the test's own, whose screen nobody sees, with hands for mouse and keyboard. No
/// window manager: what has the keyboard is said outright.
class VirtualScreen {
 public:
  VirtualScreen() {
    char pattern[] = "/tmp/pallimo-screen-XXXXXX";
    folder_ = mkdtemp(pattern);
    std::array<int, 2> ends = {-1, -1};
    EXPECT_EQ(pipe2(ends.data(), 0), 0);
    server_ = fork();
    if (server_ == 0) {
      close(ends[0]);
      // A test that is stopped takes its screen along, and no pipe stays open for it.
      prctl(PR_SET_PDEATHSIG, SIGTERM);
      const int nowhere = open("/dev/null", O_WRONLY);
      dup2(nowhere, STDOUT_FILENO);
      dup2(nowhere, STDERR_FILENO);
      // It picks the number of its display itself, and says it when it is ready. Without a reset:
      // when its last client leaves, as each look of the test's does, it would otherwise begin
      // anew, and send away whoever connects meanwhile.
      const std::string says = std::to_string(ends[1]);
      execlp("Xvfb", "Xvfb", "-displayfd", says.c_str(), "-screen", "0", "800x700x24", "-fbdir",
             folder_.c_str(), "-nolisten", "tcp", "-noreset", nullptr);
      _exit(127);
    }
    close(ends[1]);
    for (char digit = 0; read(ends[0], &digit, 1) == 1 && digit != '\n';) display_ += digit;
    close(ends[0]);
    EXPECT_NE(display_, "") << "Xvfb did not start";
    display_ = ":" + display_;
  }
  ~VirtualScreen() {
    kill(server_, SIGTERM);
    waitpid(server_, nullptr, 0);
    std::filesystem::remove_all(folder_);
  }
  VirtualScreen(const VirtualScreen&) = delete;
  VirtualScreen& operator=(const VirtualScreen&) = delete;

  /// As the variable DISPLAY names it.
  const std::string& display() const { return display_; }

  ScreenPicture picture() const {
    std::ostringstream pixels;
    pixels << std::ifstream(folder_ / "Xvfb_screen0", std::ios::binary).rdbuf();
    return ScreenPicture(pixels.str());
  }

  /// What xdotool prints for these arguments.
  std::string ask(const std::string& arguments) const {
    const std::string command = "DISPLAY=" + display_ + " xdotool " + arguments + " 2>/dev/null";
    std::string answer;
    FILE* const pipe = popen(command.c_str(), "r");
    for (int c = 0; (c = fgetc(pipe)) != EOF;) answer += static_cast<char>(c);
    pclose(pipe);
    return answer;
  }
  void click(int x, int y) const {
    ask("mousemove " + std::to_string(x) + " " + std::to_string(y) + " click 1");
  }
  void key(const std::string& keys) const { ask("key " + keys); }

  /// A window on the screen.
  struct Window {
    std::string id;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
  };
  /// The window of that title; nothing while none is shown.
  std::optional<Window> window(const std::string& title) const {
    std::istringstream ids(ask("search --onlyvisible --name '^" + title + "$'"));
    Window found;
    if (!(ids >> found.id)) return std::nullopt;
    std::istringstream lines(ask("getwindowgeometry --shell " + found.id));
    for (std::string line; std::getline(lines, line);) {
      const std::size_t equals = line.find('=');
      const std::string name = line.substr(0, equals);
      for (const auto& [wanted, place] :
           std::vector<std::pair<std::string, int*>>{{"X", &found.x},
                                                     {"Y", &found.y},
                                                     {"WIDTH", &found.width},
                                                     {"HEIGHT", &found.height}}) {
        if (name == wanted) *place = std::stoi(line.substr(equals + 1));
      }
    }
    return found;
  }
  void giveKeyboardTo(const Window& window) const { ask("windowfocus " + window.id); }

 private:
  std::filesystem::path folder_;
  pid_t server_ = -1;
  std::string display_;
};

}  // namespace pallimo::end_to_end
