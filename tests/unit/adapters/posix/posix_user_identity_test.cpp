// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/posix/posix_user_identity.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string>

namespace pallimo::adapters::posix {
namespace {

TEST(PosixUserIdentity, ReadsTheEnvironmentAnew) {
  const PosixUserIdentity identity;
  setenv("PALLIMO_TEST_ENTRY", "one", 1);
  EXPECT_EQ(identity.environment("PALLIMO_TEST_ENTRY"), "one");
  unsetenv("PALLIMO_TEST_ENTRY");
  EXPECT_EQ(identity.environment("PALLIMO_TEST_ENTRY"), "");
}

TEST(PosixUserIdentity, KnowsAnAccountByItsName) {
  const passwd* entry = getpwnam("daemon");
  ASSERT_NE(entry, nullptr);
  const auto account = PosixUserIdentity().accountOf("daemon");
  ASSERT_TRUE(account.has_value());
  EXPECT_EQ(account->name, "daemon");
  EXPECT_EQ(account->fullName, entry->pw_gecos);
  EXPECT_EQ(account->home, entry->pw_dir);
}

TEST(PosixUserIdentity, KnowsNobodyWhoIsNotThere) {
  EXPECT_FALSE(PosixUserIdentity().accountOf("nobody-is-called-so").has_value());
  EXPECT_FALSE(PosixUserIdentity().accountOf("").has_value());
}

TEST(PosixUserIdentity, KnowsWhoRunsTheProcess) {
  const passwd* entry = getpwuid(getuid());
  const auto account = PosixUserIdentity().account();
  ASSERT_EQ(account.has_value(), entry != nullptr);
  if (account) {
    EXPECT_EQ(account->name, entry->pw_name);
  }
}

TEST(PosixUserIdentity, KnowsTheMachinesName) {
  std::array<char, 256> name{};
  ASSERT_EQ(gethostname(name.data(), name.size() - 1), 0);
  EXPECT_EQ(PosixUserIdentity().hostName(), name.data());
}

}  // namespace
}  // namespace pallimo::adapters::posix
