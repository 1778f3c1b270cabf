// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/listening_helper.h"

#include <gtest/gtest.h>

#include <fstream>

#include "unit/adapters/linux/installation/lock_holder.h"
#include "unit/adapters/linux/link/link_fixture.h"

namespace pallimo::adapters::linux {
namespace {

using link_test::LockHolder;

class ListeningHelper : public ::testing::Test {
 protected:
  std::string lockPath() const { return folder_.state().helperLock(); }

  const link_test::TemporaryFolder folder_;
};

TEST_F(ListeningHelper, IsEnded) {
  LockHolder holder(lockPath());
  EXPECT_TRUE(endListeningHelper(lockPath()));
  EXPECT_EQ(holder.endedBy(), SIGKILL);
}

TEST_F(ListeningHelper, HasLetItsLockGoWhenTheCallReturns) {
  LockHolder holder(lockPath());
  EXPECT_TRUE(endListeningHelper(lockPath()));
  EXPECT_TRUE(HelperLock::take(lockPath()));
}

TEST_F(ListeningHelper, IsEndedWhenItIsStopped) {
  LockHolder holder(lockPath(), LockHolder::Signals::isStopped);
  EXPECT_TRUE(endListeningHelper(lockPath()));
  EXPECT_EQ(holder.endedBy(), SIGKILL);
}

TEST_F(ListeningHelper, IsEndedWhenItIgnoresSignals) {
  LockHolder holder(lockPath(), LockHolder::Signals::ignoresAll);
  EXPECT_TRUE(endListeningHelper(lockPath()));
  EXPECT_EQ(holder.endedBy(), SIGKILL);
}

TEST_F(ListeningHelper, OfAnotherFolderIsLeftAlone) {
  const link_test::TemporaryFolder other;
  LockHolder stranger(other.state().helperLock());
  LockHolder holder(lockPath());
  EXPECT_TRUE(endListeningHelper(lockPath()));
  EXPECT_EQ(stranger.endedBy(), 0);
}

TEST_F(ListeningHelper, ThatLetItsLockGoIsLeftAlone) {
  HelperLock::take(lockPath()).reset();
  EXPECT_TRUE(endListeningHelper(lockPath()));
}

TEST_F(ListeningHelper, IsNeverOurselves) {
  const auto lock = HelperLock::take(lockPath());
  EXPECT_TRUE(endListeningHelper(lockPath()));
}

TEST_F(ListeningHelper, WhoMerelyHasTheFileOpenIsLeftAlone) {
  HelperLock::take(lockPath()).reset();
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t reader = fork();
  if (reader == 0) {
    const std::ifstream open(lockPath());
    if (write(ready[1], "y", 1) != 1) _exit(1);
    for (;;) pause();
  }
  char answer = 0;
  ASSERT_EQ(read(ready[0], &answer, 1), 1);
  EXPECT_TRUE(endListeningHelper(lockPath()));
  EXPECT_EQ(waitpid(reader, nullptr, WNOHANG), 0);
  kill(reader, SIGKILL);
  waitpid(reader, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
}

TEST_F(ListeningHelper, WithoutALockFileThereIsNone) {
  EXPECT_TRUE(endListeningHelper(lockPath()));
  EXPECT_FALSE(std::filesystem::exists(lockPath()));
}

TEST_F(ListeningHelper, IsNotLookedForThroughALink) {
  const link_test::TemporaryFolder other;
  LockHolder stranger(other.state().helperLock());
  std::filesystem::create_symlink(other.state().helperLock(), lockPath());
  EXPECT_FALSE(endListeningHelper(lockPath()));
  EXPECT_EQ(stranger.endedBy(), 0);
}

}  // namespace
}  // namespace pallimo::adapters::linux
