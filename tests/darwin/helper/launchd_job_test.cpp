// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper/macos/launchd_job.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fakes/recording_lines.h"

namespace pallimo::helper {
namespace {

namespace fs = std::filesystem;

class LaunchdJobTest : public ::testing::Test {
 protected:
  LaunchdJobTest() {
    std::string name = testing::TempDir() + "/pallimo_job_XXXXXX";
    folder = mkdtemp(name.data());
    places.jobFile = write("job.plist", "job");
    places.tool = write("tool", "tool");
    // It says how it was called, and what it found of the files.
    places.launchctl =
        write("launchctl", "#!/bin/sh\necho \"$@\" >" + folder +
                               "/called\necho \"PATH=$PATH HOME=$HOME\" >>" + folder +
                               "/called\nls " + folder + " >>" + folder + "/called\n");
    chmod(places.launchctl.c_str(), 0700);
    places.job = "system/com.ostrovane.powermetrics";
  }
  ~LaunchdJobTest() override { fs::remove_all(folder); }

  std::string write(const std::string& name, const std::string& text) const {
    const std::string path = folder + "/" + name;
    std::ofstream(path) << text;
    return path;
  }
  std::string read(const std::string& name) const {
    std::ifstream file(folder + "/" + name);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// Removes, and waits for the program that was started.
  void remove() {
    LaunchdJob(log, places).removeInstalled();
    waitpid(-1, nullptr, 0);
  }

  std::string folder;
  LaunchdJob::Places places;
  fakes::RecordingSystemLog log;
};

TEST_F(LaunchdJobTest, RemovesBothFilesAndThenTheJob) {
  remove();
  EXPECT_FALSE(fs::exists(places.jobFile));
  EXPECT_FALSE(fs::exists(places.tool));
  EXPECT_EQ(read("called"),
            "bootout system/com.ostrovane.powermetrics\n"
            "PATH=/usr/bin:/bin:/usr/sbin:/sbin HOME=\ncalled\nlaunchctl\n");
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(LaunchdJobTest, DoesNotMindFilesThatAreGone) {
  fs::remove(places.jobFile);
  fs::remove(places.tool);
  remove();
  EXPECT_TRUE(fs::exists(folder + "/called"));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(LaunchdJobTest, GoesOnWhenAFileCanNotBeRemoved) {
  fs::remove(places.jobFile);
  fs::create_directory(places.jobFile);
  remove();
  EXPECT_FALSE(fs::exists(places.tool));
  EXPECT_TRUE(fs::exists(folder + "/called"));
  ASSERT_EQ(log.lines().size(), 1u);
  EXPECT_EQ(log.lines()[0].find("can't remove \"" + places.jobFile + "\": "), 0u);
}

TEST_F(LaunchdJobTest, SaysWhenLaunchdCanNotBeAsked) {
  places.launchctl = folder + "/nowhere";
  remove();
  EXPECT_FALSE(fs::exists(places.tool));
  ASSERT_EQ(log.lines().size(), 1u);
  EXPECT_EQ(log.lines()[0], "can't start \"" + places.launchctl + "\": No such file or directory");
}

TEST(LaunchdJob, KnowsItsPlacesFromTheBuildAlone) {
  const LaunchdJob::Places places;
  EXPECT_EQ(places.jobFile, "/Library/LaunchDaemons/com.ostrovane.powermetrics.plist");
  EXPECT_EQ(places.tool, "/Library/PrivilegedHelperTools/com.ostrovane.powermetrics");
  EXPECT_EQ(places.launchctl, "/bin/launchctl");
  EXPECT_EQ(places.job, "system/com.ostrovane.powermetrics");
}

}  // namespace
}  // namespace pallimo::helper
