// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/helper_lock.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "unit/adapters/linux/link_fixture.h"

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
