// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_screens.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include "unit/adapters/qt/event_loop.h"

namespace pallimo::adapters::qt {
namespace {

/// A program with a window system that shows nothing and has these screens, the first with its
/// origin at 0, 0.
class ScreenProgram {
 public:
  explicit ScreenProgram(const QByteArray& screens) {
    QFile file(folder_.filePath("screens.json"));
    if (file.open(QIODevice::WriteOnly)) file.write("{\"screens\": [" + screens + "]}");
    file.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.fileName().toUtf8());
    application_ = std::make_unique<QGuiApplication>(argumentCount_, arguments_);
  }
  ~ScreenProgram() { qunsetenv("QT_QPA_PLATFORM"); }

 private:
  QTemporaryDir folder_;
  int argumentCount_ = 1;
  char name_[5] = "test";
  char* arguments_[2] = {name_, nullptr};
  std::unique_ptr<QGuiApplication> application_;
};

TEST(QtScreens, AProgramWithoutWindowsHasNone) {
  const EventLoop program;
  EXPECT_EQ(QtScreens().count(), 0u);
  EXPECT_EQ(QtScreens().mainScreen(), std::nullopt);
}

TEST(QtScreens, OneIsTheMainScreen) {
  const ScreenProgram program(
      R"({"name": "one", "x": 0, "y": 0, "width": 1024, "height": 640, "logicalDpi": 96,
          "logicalBaseDpi": 96, "dpr": 1})");
  EXPECT_EQ(QtScreens().count(), 1u);
  EXPECT_EQ(QtScreens().mainScreen(), (ports::Screen{1024, 640, 1}));
}

TEST(QtScreens, EachCountsAndTheFirstIsTheMainScreenInPoints) {
  const ScreenProgram program(
      R"({"name": "one", "x": 0, "y": 0, "width": 1512, "height": 982, "logicalDpi": 96,
          "logicalBaseDpi": 96, "dpr": 2},
         {"name": "two", "x": 1512, "y": 0, "width": 800, "height": 600, "logicalDpi": 96,
          "logicalBaseDpi": 96, "dpr": 1})");
  EXPECT_EQ(QtScreens().count(), 2u);
  EXPECT_EQ(QtScreens().mainScreen(), (ports::Screen{1512, 982, 2}));
}

}  // namespace
}  // namespace pallimo::adapters::qt
