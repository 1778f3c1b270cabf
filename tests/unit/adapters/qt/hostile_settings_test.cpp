// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <stdlib.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/qt/qt_user_defaults.h"
#include "unit/adapters/qt/complaints.h"
#include "unit/adapters/qt/event_loop.h"

// Settings files that no app has written. Whatever stands in one, it is read, every value can be
// asked for as every kind, and what the app writes into it is there the next time. The files are
// made by chance, the same ones each time.

namespace pallimo::adapters::qt {
namespace {

constexpr std::array<const char*, 8> kKeys = {
    "gpuFrequency",       "gpuUtilization",     "showEPUtilization", "temperatureUnit",
    "pathFolderLocation", "samplingResolution", "mainWindowPlace",   "reference"};

/// Words of such a file, among them all that are special to Qt.
const std::vector<std::string>& words() {
  using namespace std::string_literals;
  static const std::vector<std::string> all = {"[General]\n",
                                               "[%General]\n",
                                               "[",
                                               "]",
                                               "[]\n",
                                               "[a/b]\n",
                                               "=",
                                               "\n",
                                               "\r",
                                               "\r\n",
                                               ";",
                                               "#",
                                               "\"",
                                               "\\",
                                               "\\\n",
                                               "\\x",
                                               "\\x0",
                                               "\\xd800",
                                               "\\xffff",
                                               "\\0",
                                               "\\777",
                                               "%",
                                               "%zz",
                                               "%U12",
                                               "%00",
                                               "/",
                                               "//",
                                               ",",
                                               ", ",
                                               " ",
                                               "\t",
                                               "1",
                                               "-1",
                                               "0x10",
                                               "1e400",
                                               "-0",
                                               "nan",
                                               "inf",
                                               "99999999999999999999999",
                                               "true",
                                               "YES",
                                               "@Invalid()",
                                               "@ByteArray(abc)",
                                               "@String(a)",
                                               "@Variant(",
                                               "@Variant(\\0\\0\\0\\n\\0\\0\\0\\x2\\0\\x61)",
                                               "@Variant(\\0\\0\\0\\xc\\x7f\\xff\\xff\\xff)",
                                               "@Variant(\\0\\0\\0\\b\\xff\\xff\\xff\\xfe)",
                                               "@DateTime(\\0\\0\\0\\x10\\0\\0\\0)",
                                               "@Rect(1 2 3 4)",
                                               "@Rect(1 2)",
                                               "@Size(9 9)",
                                               "@Point(1 2)",
                                               "@Size(99999999999 -)",
                                               "@",
                                               "@@",
                                               "size=2\n",
                                               "1\\gpuFrequency=1\n",
                                               "\xEF\xBB\xBF",
                                               "\xFF\xFE",
                                               "\xC3",
                                               "\xED\xA0\x80",
                                               "\xF4\x90\x80\x80",
                                               "é",
                                               "😀",
                                               "\0"s,
                                               "\x1b[31m",
                                               std::string(5'000, 'x'),
                                               std::string(300, '\\'),
                                               std::string(300, '"')};
  return all;
}

std::string randomFile(std::mt19937& random) {
  const auto pick = [&](const auto& from) { return std::string(from[random() % std::size(from)]); };
  std::string text = random() % 2 == 0 ? "[General]\n" : "";
  for (std::uint32_t line = random() % 12; line > 0; --line) {
    if (random() % 8 != 0) text += pick(kKeys) + "=";
    for (std::uint32_t word = random() % 5; word > 0; --word) text += pick(words());
    if (random() % 8 != 0) text += "\n";
  }
  for (std::uint32_t edit = random() % 4; edit > 0 && !text.empty(); --edit) {
    text[random() % text.size()] = static_cast<char>(random());
  }
  if (random() % 16 == 0) text.resize(random() % (text.size() + 1));
  return text;
}

class HostileSettings : public testing::Test {
 protected:
  HostileSettings() {
    char pattern[] = "/tmp/pallimo-XXXXXX";
    folder_ = mkdtemp(pattern);
  }
  ~HostileSettings() override { std::filesystem::remove_all(folder_); }

  std::string file() const { return folder_ + "/settings.ini"; }
  void write(std::string_view text) const { std::ofstream(file(), std::ios::binary) << text; }

  using Texts = std::map<std::string, std::optional<std::string>>;
  static Texts textsIn(const QtUserDefaults& defaults) {
    Texts texts;
    for (const char* key : kKeys) texts[key] = defaults.textForKey(key);
    return texts;
  }

  /// Of each value its kinds agree.
  static void checkValues(const QtUserDefaults& defaults) {
    for (const char* key : kKeys) {
      const double real = defaults.doubleForKey(key);
      EXPECT_EQ(defaults.boolForKey(key), real != 0 && !std::isnan(real)) << key;
      if (std::abs(real) < 1e15) {
        EXPECT_EQ(defaults.integerForKey(key), static_cast<std::int64_t>(real)) << key;
      }
      EXPECT_EQ(defaults.contains(key), defaults.textForKey(key).has_value()) << key;
    }
  }

  /// Reads the file, changes two settings, and reads it again; the others are as they were.
  void checkFile(const std::string& text) const {
    write(text);
    Texts expected;
    {
      QtUserDefaults defaults(file());
      checkValues(defaults);
      expected = textsIn(defaults);
      defaults.setBool("gpuFrequency", true);
      defaults.setText("pathFolderLocation", "/tmp/a, b");
    }
    expected["gpuFrequency"] = "true";
    expected["pathFolderLocation"] = "/tmp/a, b";
    const QtUserDefaults again(file());
    checkValues(again);
    EXPECT_EQ(textsIn(again), expected);
  }

  EventLoop loop_;
  std::string folder_;
};

TEST_F(HostileSettings, AnyFileIsReadAndCanBeWrittenInto) {
  const Complaints complaints;
  std::mt19937 random(20261121);
  for (int round = 0; round < 200 && !HasFailure(); ++round) {
    const std::string text = randomFile(random);
    SCOPED_TRACE(round);
    const std::size_t before = complaints.count();
    checkFile(text);
    // Qt has a word for values in its own binary form whose kind it does not know, and none else.
    if (text.find("@Variant(") == std::string::npos) {
      EXPECT_EQ(complaints.count(), before);
    }
  }
}

TEST_F(HostileSettings, RandomBytesAreReadAndCanBeWrittenInto) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 100 && !HasFailure(); ++round) {
    std::string bytes(random() % 400, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    SCOPED_TRACE(round);
    checkFile(bytes);
  }
}

TEST_F(HostileSettings, AFolderInTheFilesPlaceReadsAsNothing) {
  std::filesystem::create_directory(file());
  QtUserDefaults defaults(file());
  EXPECT_FALSE(defaults.contains("gpuFrequency"));
  defaults.setBool("gpuFrequency", true);
  EXPECT_TRUE(defaults.boolForKey("gpuFrequency"));
}

}  // namespace
}  // namespace pallimo::adapters::qt
