// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/linux/installation/user_authorization.h"

#include <gtest/gtest.h>

namespace pallimo::adapters::linux {
namespace {

TEST(UserAuthorization, IsHadAtOnce) {
  const auto attempt = UserAuthorization().createAuthorization();
  EXPECT_EQ(attempt.status, 0);
  EXPECT_NE(attempt.token, nullptr);
}

TEST(UserAuthorization, EachIsANewOne) {
  UserAuthorization services;
  const auto one = services.createAuthorization();
  EXPECT_NE(one.token, services.createAuthorization().token);
}

TEST(UserAuthorization, EveryRightIsGranted) {
  UserAuthorization services;
  const auto token = services.createAuthorization().token;
  EXPECT_EQ(services.copyRight(*token, "system.privilege.admin", 19), 0);
}

TEST(UserAuthorization, ThereIsNoFunctionThatRunsPrograms) {
  UserAuthorization services;
  const auto token = services.createAuthorization().token;
  EXPECT_EQ(services.executeWithPrivileges(*token, "/bin/true", {}), std::nullopt);
}

}  // namespace
}  // namespace pallimo::adapters::linux
