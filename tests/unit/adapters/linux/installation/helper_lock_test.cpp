// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/helper_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "unit/adapters/linux/link/link_fixture.h"

namespace pallimo::adapters::linux {
namespace {

using link_test::TemporaryFolder;

TEST(HelperLock, IsHeldByOneAtATime) {
  TemporaryFolder folder;
  auto first = HelperLock::take(folder.state().helperLock());
  EXPECT_TRUE(first);
  EXPECT_FALSE(HelperLock::take(folder.state().helperLock()));
  first.reset();
  EXPECT_TRUE(HelperLock::take(folder.state().helperLock()));
}

TEST(HelperLock, MovesWithItsHolder) {
  TemporaryFolder folder;
  auto first = HelperLock::take(folder.state().helperLock());
  const HelperLock moved = std::move(*first);
  first.reset();
  EXPECT_FALSE(HelperLock::take(folder.state().helperLock()));
}

/// A process of which the kernel says that it holds the lock, before it has the lock itself.
TEST(HelperLock, IsNotTakenWhileTheKernelNamesAnotherHolder) {
  TemporaryFolder folder;
  HelperLock::take(folder.state().helperLock()).reset();
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t other = fork();
  if (other == 0) {
    struct flock whole = {};
    whole.l_type = F_WRLCK;
    const int file = open(folder.state().helperLock().c_str(), O_RDWR);
    if (fcntl(file, F_SETLK, &whole) != 0 || write(ready[1], "y", 1) != 1) _exit(1);
    for (;;) pause();
  }
  close(ready[1]);
  char answer = 0;
  EXPECT_EQ(read(ready[0], &answer, 1), 1);
  EXPECT_FALSE(HelperLock::take(folder.state().helperLock()));
  kill(other, SIGKILL);
  waitpid(other, nullptr, 0);
  EXPECT_TRUE(HelperLock::take(folder.state().helperLock()));
  close(ready[0]);
}

TEST(HelperLock, ItsFileIsItsOwnersAlone) {
  TemporaryFolder folder;
  const auto lock = HelperLock::take(folder.state().helperLock());
  struct stat status = {};
  ASSERT_EQ(stat(folder.state().helperLock().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0600u & status.st_mode);
}

TEST(HelperLock, IsNotTakenThroughALink) {
  TemporaryFolder folder;
  std::filesystem::create_symlink(folder.path() + "/target", folder.state().helperLock());
  EXPECT_FALSE(HelperLock::take(folder.state().helperLock()));
  EXPECT_FALSE(std::filesystem::exists(folder.path() + "/target"));
}

TEST(HelperLock, WithoutAFolderThereIsNone) {
  TemporaryFolder folder;
  EXPECT_FALSE(HelperLock::take(folder.path() + "/gone/helper.lock"));
}

}  // namespace
}  // namespace pallimo::adapters::linux
