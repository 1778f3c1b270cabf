// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_user_defaults.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "unit/adapters/qt/complaints.h"
#include "unit/adapters/qt/event_loop.h"

namespace pallimo::adapters::qt {
namespace {

class QtUserDefaultsTest : public testing::Test {
 protected:
  QtUserDefaultsTest() {
    char pattern[] = "/tmp/pallimo-XXXXXX";
    folder_ = mkdtemp(pattern);
  }
  ~QtUserDefaultsTest() override { std::filesystem::remove_all(folder_); }

  std::string file() const { return folder_ + "/settings.ini"; }
  void write(const std::string& text) const { std::ofstream(file()) << text; }

  EventLoop loop_;
  std::string folder_;
};

TEST_F(QtUserDefaultsTest, AnAbsentKeyReadsAsNothing) {
  const QtUserDefaults defaults(file());
  EXPECT_FALSE(defaults.contains("gpuFrequency"));
  EXPECT_FALSE(defaults.boolForKey("gpuFrequency"));
  EXPECT_EQ(defaults.integerForKey("gpuFrequency"), 0);
  EXPECT_EQ(defaults.doubleForKey("gpuFrequency"), 0);
  EXPECT_EQ(defaults.textForKey("gpuFrequency"), std::nullopt);
}

TEST_F(QtUserDefaultsTest, ValuesAreThereAtOnceAndAfterARestart) {
  const auto check = [](const ports::UserDefaults& defaults) {
    EXPECT_TRUE(defaults.boolForKey("gpuFrequency"));
    EXPECT_EQ(defaults.integerForKey("count"), 9007199254740993);
    EXPECT_EQ(defaults.textForKey("pathFolderLocation"), "/tmp/a, \"b\"; c=d/é \\ @x%20");
  };
  {
    QtUserDefaults defaults(file());
    defaults.setBool("gpuFrequency", true);
    defaults.setInteger("count", 9007199254740993);
    defaults.setText("pathFolderLocation", "/tmp/a, \"b\"; c=d/é \\ @x%20");
    check(defaults);
  }
  check(QtUserDefaults(file()));
}

TEST_F(QtUserDefaultsTest, EmptyAndAbsentDifferAlsoAfterARestart) {
  QtUserDefaults(file()).setText("pathFolderLocation", "");
  const QtUserDefaults defaults(file());
  EXPECT_TRUE(defaults.contains("pathFolderLocation"));
  EXPECT_EQ(defaults.textForKey("pathFolderLocation"), "");
}

TEST_F(QtUserDefaultsTest, ARemovedKeyIsGoneAlsoAfterARestart) {
  QtUserDefaults(file()).setBool("gpuFrequency", true);
  {
    QtUserDefaults defaults(file());
    defaults.remove("gpuFrequency");
    EXPECT_FALSE(defaults.contains("gpuFrequency"));
  }
  EXPECT_FALSE(QtUserDefaults(file()).contains("gpuFrequency"));
}

TEST_F(QtUserDefaultsTest, AFileWrittenByHandReads) {
  write("[General]\ngpuFrequency=YES\nsamplingResolution=250.5\npathFolderLocation=/tmp/a, b\n");
  const QtUserDefaults defaults(file());
  EXPECT_TRUE(defaults.boolForKey("gpuFrequency"));
  EXPECT_EQ(defaults.doubleForKey("samplingResolution"), 250.5);
  EXPECT_EQ(defaults.textForKey("pathFolderLocation"), "/tmp/a, b");
}

TEST_F(QtUserDefaultsTest, AnEntryWithoutAKeyIsPassedOver) {
  write("=%zz\n[General]\n=1\ncount=2\n");
  const Complaints complaints;
  {
    QtUserDefaults defaults(file());
    EXPECT_EQ(defaults.integerForKey("count"), 2);
    EXPECT_FALSE(defaults.contains(""));
    defaults.setInteger("count", 3);
  }
  EXPECT_EQ(QtUserDefaults(file()).integerForKey("count"), 3);
  EXPECT_EQ(complaints.count(), 0u);
}

TEST_F(QtUserDefaultsTest, AChangeIsWrittenFromTheEventLoop) {
  QtUserDefaults defaults(file());
  defaults.setBool("gpuFrequency", true);
  EXPECT_TRUE(loop_.runUntil([&] { return std::filesystem::exists(file()); }));
}

TEST_F(QtUserDefaultsTest, ObserversAreToldOnTheThreadThatMadeTheChange) {
  QtUserDefaults defaults(file());
  std::thread::id told;
  bool seen = false;
  const auto subscription = defaults.observeChanges([&] {
    told = std::this_thread::get_id();
    seen = defaults.boolForKey("gpuFrequency");
  });
  std::thread::id made;
  std::thread other([&] {
    made = std::this_thread::get_id();
    defaults.setBool("gpuFrequency", true);
  });
  other.join();
  EXPECT_EQ(told, made);
  EXPECT_TRUE(seen);
}

TEST_F(QtUserDefaultsTest, EveryKindOfChangeIsAnnouncedUntilTheSubscriptionEnds) {
  QtUserDefaults defaults(file());
  int changes = 0;
  auto subscription = defaults.observeChanges([&] { ++changes; });
  defaults.setBool("a", true);
  defaults.setInteger("b", 1);
  defaults.setText("d", "x");
  defaults.remove("d");
  EXPECT_EQ(changes, 4);
  subscription.cancel();
  defaults.setBool("a", false);
  EXPECT_EQ(changes, 4);
}

}  // namespace
}  // namespace pallimo::adapters::qt
