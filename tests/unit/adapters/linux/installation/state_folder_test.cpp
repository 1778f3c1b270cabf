// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/state_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "unit/adapters/linux/link/link_fixture.h"

namespace pallimo::adapters::linux {
namespace {

using link_test::TemporaryFolder;

mode_t modeOf(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

TEST(StateFolder, NamesItsFiles) {
  const StateFolder folder("/state");
  EXPECT_EQ(folder.path(), "/state");
  EXPECT_EQ(folder.settingsFile(), "/state/settings.ini");
  EXPECT_EQ(folder.simulationFile(), "/state/simulation.json");
  EXPECT_EQ(folder.installedHelper(), "/state/PrivilegedHelperTools/com.ostrovane.powermetrics");
  EXPECT_EQ(folder.helperSocket(), "/state/helper.socket");
  EXPECT_EQ(folder.helperLock(), "/state/helper.lock");
}

TEST(StateFolder, IsFoundFromAnInstalledHelper) {
  const StateFolder folder("/home/me/state");
  EXPECT_EQ(StateFolder::ofInstalledHelper(folder.installedHelper()).path(), "/home/me/state");
  EXPECT_EQ(StateFolder::ofInstalledHelper("/tools/helper").path(), "/");
}

TEST(PrepareStateFolder, MakesTheFolderAndItsParentsForTheOwnerAlone) {
  TemporaryFolder folder;
  const StateFolder state(folder.path() + "/a/b");
  EXPECT_EQ(prepareStateFolder(state), std::nullopt);
  EXPECT_EQ(modeOf(folder.path() + "/a"), 0700u);
  EXPECT_EQ(modeOf(state.path()), 0700u);
}

TEST(PrepareStateFolder, ClosesAnEmptyFolderThatIsOpenToOthers) {
  TemporaryFolder folder;
  chmod(folder.path().c_str(), 0755);
  EXPECT_EQ(prepareStateFolder(folder.state()), std::nullopt);
  EXPECT_EQ(modeOf(folder.path()), 0700u);
}

TEST(PrepareStateFolder, ClosesAFolderOfOursThatIsOpenToOthers) {
  TemporaryFolder folder;
  std::ofstream(folder.state().simulationFile()) << "{}";
  chmod(folder.path().c_str(), 0755);
  EXPECT_EQ(prepareStateFolder(folder.state()), std::nullopt);
  EXPECT_EQ(modeOf(folder.path()), 0700u);
}

TEST(PrepareStateFolder, LeavesAFolderOfOtherFilesAsItIs) {
  TemporaryFolder folder;
  std::ofstream(folder.path() + "/letter.txt") << "text";
  chmod(folder.path().c_str(), 0755);
  EXPECT_EQ(prepareStateFolder(folder.state()),
            "the state folder \"" + folder.path() +
                "\" is open to other users and holds other files; choose another one");
  EXPECT_EQ(modeOf(folder.path()), 0755u);
}

TEST(PrepareStateFolder, LeavesASharedFolderAsItIs) {
  TemporaryFolder folder;
  chmod(folder.path().c_str(), 01777);
  EXPECT_NE(prepareStateFolder(folder.state()), std::nullopt);
  EXPECT_EQ(modeOf(folder.path()), 01777u);
}

TEST(PrepareStateFolder, TakesAClosedFolderWithOtherFilesInIt) {
  TemporaryFolder folder;
  std::ofstream(folder.path() + "/letter.txt") << "text";
  EXPECT_EQ(prepareStateFolder(folder.state()), std::nullopt);
}

TEST(CheckInstalledHelper, IsContentWithAnInstalledOne) {
  TemporaryFolder folder;
  EXPECT_EQ(checkInstalledHelper(folder.state().installedHelper()), std::nullopt);
}

TEST(CheckInstalledHelper, RefusesAHelperThatLiesElsewhereAndTouchesNothing) {
  TemporaryFolder folder;
  chmod(folder.path().c_str(), 0755);
  const std::string path = folder.path() + "/bin/com.ostrovane.powermetrics";
  EXPECT_EQ(checkInstalledHelper(path), "\"" + path + "\" is not where a helper is installed");
  EXPECT_EQ(modeOf(folder.path()), 0755u);
}

TEST(CheckInstalledHelper, RefusesAFolderThatIsOpenToOthersAndLeavesItOpen) {
  TemporaryFolder folder;
  chmod(folder.path().c_str(), 0750);
  EXPECT_EQ(checkInstalledHelper(folder.state().installedHelper()),
            "the state folder \"" + folder.path() + "\" is open to other users");
  EXPECT_EQ(modeOf(folder.path()), 0750u);
}

TEST(PrepareStateFolder, RefusesAFile) {
  TemporaryFolder folder;
  const StateFolder state(folder.path() + "/file");
  std::ofstream(state.path()) << "text";
  EXPECT_EQ(prepareStateFolder(state), "the state folder \"" + state.path() + "\" is not a folder");
}

TEST(PrepareStateFolder, RefusesALink) {
  TemporaryFolder folder;
  const StateFolder state(folder.path() + "/link");
  std::filesystem::create_directory_symlink(folder.path(), state.path());
  EXPECT_EQ(prepareStateFolder(state),
            "the state folder \"" + state.path() + "\" is a symbolic link");
}

TEST(PrepareStateFolder, RefusesAnotherUsersFolder) {
  if (geteuid() != 0) return;  // nobody else can give a folder away
  TemporaryFolder folder;
  ASSERT_EQ(chown(folder.path().c_str(), 65'534, 65'534), 0);
  EXPECT_EQ(prepareStateFolder(folder.state()),
            "the state folder \"" + folder.path() + "\" belongs to another user");
}

TEST(PrepareStateFolder, RefusesAFolderThatCanNotBeMade) {
  TemporaryFolder folder;
  std::ofstream(folder.path() + "/file") << "text";
  const std::string path = folder.path() + "/file/state";
  EXPECT_EQ(prepareStateFolder(StateFolder(path)),
            "can't make the state folder \"" + path + "\": Not a directory");
}

TEST(PrepareStateFolder, ASocketsPathMayHave99Bytes) {
  TemporaryFolder folder;
  const std::size_t rest = 99 - std::string("/helper.socket").size() - folder.path().size() - 1;
  const StateFolder longest(folder.path() + "/" + std::string(rest, 'd'));
  EXPECT_EQ(prepareStateFolder(longest), std::nullopt);
  const StateFolder tooLong(longest.path() + "d");
  EXPECT_EQ(prepareStateFolder(tooLong), "the state folder's path is too long: \"" +
                                             tooLong.helperSocket() +
                                             "\" has 100 bytes, a socket's path at most 99");
  EXPECT_FALSE(std::filesystem::exists(tooLong.path()));
}

TEST(PrepareStateFolder, AHelperServesWithTheLongestPath) {
  TemporaryFolder folder;
  const std::size_t rest = 99 - std::string("/helper.socket").size() - folder.path().size() - 1;
  const StateFolder longest(folder.path() + "/" + std::string(rest, 'd'));
  ASSERT_EQ(prepareStateFolder(longest), std::nullopt);
  link_test::TestHelper helper(longest);
  ASSERT_TRUE(helper.hasStarted());
  link_test::TestApp app(longest);
  app.connect();
  app.askVersion();
  EXPECT_TRUE(app.log->waitFor("1.2.3"));
}

}  // namespace
}  // namespace pallimo::adapters::linux
