// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/built_bundle.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

#include "adapters/libplist/libplist_reader.h"
#include "unit/adapters/linux/link/link_fixture.h"

namespace pallimo::adapters::linux {
namespace {

constexpr const char* kTool = "Contents/tools/a.tool";

std::string listOf(const std::string& version) {
  return "<plist version=\"1.0\"><dict><key>CFBundleShortVersionString</key><string>" + version +
         "</string></dict></plist>";
}

class BuiltBundleTest : public ::testing::Test {
 protected:
  BuiltBundleTest() { std::filesystem::create_directories(root() + "/Contents/tools"); }

  std::string root() const { return folder_.path(); }
  std::string tool() const { return root() + "/" + kTool; }
  std::string list() const { return tool() + ".plist"; }
  static void write(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
  }
  std::optional<base::PropertyList> info() const {
    return BuiltBundle(root(), reader_).infoDictionary(kTool);
  }

  const link_test::TemporaryFolder folder_;
  const libplist::LibplistReader reader_;
};

TEST_F(BuiltBundleTest, TheListBesideAToolIsItsInfoDictionary) {
  write(tool(), "program");
  write(list(), listOf("1.2.3"));
  const auto read = info();
  ASSERT_TRUE(read);
  EXPECT_EQ(*read, base::PropertyList(
                       {{"CFBundleShortVersionString", base::PropertyList(std::string("1.2.3"))}}));
}

TEST_F(BuiltBundleTest, TheListIsReadAnewEveryTime) {
  write(tool(), "program");
  write(list(), listOf("1.2.3"));
  const BuiltBundle bundle(root(), reader_);
  const auto before = bundle.infoDictionary(kTool);
  write(list(), listOf("1.2.4"));
  EXPECT_NE(bundle.infoDictionary(kTool), before);
}

TEST_F(BuiltBundleTest, WithoutAToolThereIsNoInfoDictionary) {
  write(list(), listOf("1.2.3"));
  EXPECT_EQ(info(), std::nullopt);
}

TEST_F(BuiltBundleTest, WithoutAListThereIsNoInfoDictionary) {
  write(tool(), "program");
  EXPECT_EQ(info(), std::nullopt);
}

TEST_F(BuiltBundleTest, AListThatIsNoneIsNoInfoDictionary) {
  write(tool(), "program");
  for (const std::string& text : {std::string(), std::string("text"), std::string("<plist><dict>"),
                                  std::string("<plist><string>1.2.3</string></plist>")}) {
    write(list(), text);
    EXPECT_EQ(info(), std::nullopt) << text;
  }
}

TEST_F(BuiltBundleTest, AListThatIsFarTooLongIsNotRead) {
  write(tool(), "program");
  write(list(), listOf(std::string(65536, '1')));
  EXPECT_EQ(info(), std::nullopt);
}

TEST_F(BuiltBundleTest, AFolderOrAPipeInTheListsPlaceIsNoInfoDictionary) {
  write(tool(), "program");
  std::filesystem::create_directory(list());
  EXPECT_EQ(info(), std::nullopt);
  std::filesystem::remove(list());
  ASSERT_EQ(mkfifo(list().c_str(), 0600), 0);
  EXPECT_EQ(info(), std::nullopt);
}

TEST(BuiltBundle, TheHelperOfThisBuildHasItsVersion) {
  const libplist::LibplistReader reader;
  const auto info =
      BuiltBundle(PALLIMO_BIN_DIR, reader)
          .infoDictionary("Contents/Library/LaunchServices/com.ostrovane.powermetrics");
  const base::PropertyList name(std::string("com.ostrovane.powermetrics"));
  const base::PropertyList version(std::string(PALLIMO_VERSION));
  ASSERT_TRUE(info);
  for (const char* key : {"CFBundleIdentifier", "CFBundleName"}) {
    ASSERT_NE(info->find(key), nullptr) << key;
    EXPECT_EQ(*info->find(key), name) << key;
  }
  for (const char* key : {"CFBundleShortVersionString", "CFBundleVersion"}) {
    ASSERT_NE(info->find(key), nullptr) << key;
    EXPECT_EQ(*info->find(key), version) << key;
  }
}

}  // namespace
}  // namespace pallimo::adapters::linux
