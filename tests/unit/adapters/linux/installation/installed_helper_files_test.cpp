// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/installed_helper_files.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "fakes/recording_lines.h"

namespace pallimo::adapters::linux {
namespace {

namespace fs = std::filesystem;

class InstalledHelperFilesTest : public ::testing::Test {
 protected:
  InstalledHelperFilesTest() {
    fs::create_directories(helper.parent_path());
    std::ofstream(helper) << "program";
    std::ofstream(folder.settingsFile()) << "settings";
  }
  ~InstalledHelperFilesTest() override { fs::remove_all(folder.path()); }

  static std::string makeFolder() {
    std::string pattern = "/tmp/pallimo-XXXXXX";
    return mkdtemp(pattern.data());
  }

  const StateFolder folder{makeFolder()};
  const fs::path helper{folder.installedHelper()};
  fakes::RecordingSystemLog log;
  InstalledHelperFiles files{folder, log};
};

TEST_F(InstalledHelperFilesTest, RemovesTheHelper) {
  files.removeInstalled();
  EXPECT_FALSE(fs::exists(helper));
}

TEST_F(InstalledHelperFilesTest, RemovesNothingElse) {
  std::ofstream(helper.parent_path() / "other") << "other";
  files.removeInstalled();
  EXPECT_TRUE(fs::exists(helper.parent_path() / "other"));
  EXPECT_TRUE(fs::exists(folder.settingsFile()));
}

TEST_F(InstalledHelperFilesTest, IsContentWhenTheHelperIsGone) {
  files.removeInstalled();
  files.removeInstalled();
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(InstalledHelperFilesTest, RemovesALinkAndNotWhatItPointsTo) {
  const fs::path target = fs::path(folder.path()) / "target";
  fs::rename(helper, target);
  fs::create_symlink(target, helper);
  files.removeInstalled();
  EXPECT_FALSE(fs::is_symlink(helper));
  EXPECT_TRUE(fs::exists(target));
}

TEST_F(InstalledHelperFilesTest, SaysInTheLogWhatWentWrong) {
  fs::remove(helper);
  fs::create_directories(helper / "not a file");
  files.removeInstalled();
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(log.lines()[0], "can't remove \"" + helper.string() + "\": Is a directory");
}

}  // namespace
}  // namespace pallimo::adapters::linux
