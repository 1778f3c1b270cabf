// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/faults/faulty_authorization_services.h"

#include <gtest/gtest.h>

#include "fakes/fake_authorization_services.h"

namespace pallimo::adapters::simulated {
namespace {

using Calls = std::vector<std::string>;

TEST(FaultyAuthorizationServices, WithoutAFaultTheSystemAnswers) {
  fakes::FakeAuthorizationServices system;
  FaultyAuthorizationServices services(system, {});
  const auto attempt = services.createAuthorization();
  EXPECT_EQ(attempt.status, 0);
  EXPECT_EQ(attempt.token, system.attempt.token);
}

TEST(FaultyAuthorizationServices, APlannedStatusComesWithoutATokenAndNobodyIsAsked) {
  fakes::FakeAuthorizationServices system;
  FaultyAuthorizationServices services(system, {.authorizationStatus = -60005});
  const auto attempt = services.createAuthorization();
  EXPECT_EQ(attempt.status, -60005);
  EXPECT_EQ(attempt.token, nullptr);
  EXPECT_EQ(system.calls, Calls());
}

TEST(FaultyAuthorizationServices, TheStatusOfSuccessMayBePlannedToo) {
  fakes::FakeAuthorizationServices system;
  FaultyAuthorizationServices services(system, {.authorizationStatus = 0});
  const auto attempt = services.createAuthorization();
  EXPECT_EQ(attempt.status, 0);
  EXPECT_EQ(attempt.token, nullptr);
}

TEST(FaultyAuthorizationServices, RightsAndProgramsPassThrough) {
  fakes::FakeAuthorizationServices system;
  system.copyStatus = -60006;
  system.executeStatus = -60031;
  FaultyAuthorizationServices services(system, {.authorizationStatus = -60005});
  const fakes::FakeAuthorizationServices::Token token;
  EXPECT_EQ(services.copyRight(token, "system.privilege.admin", 19), -60006);
  EXPECT_EQ(services.executeWithPrivileges(token, "/bin/x", {"a", ""}), -60031);
  EXPECT_EQ(system.calls, (Calls{"copyRight system.privilege.admin 19", "execute [/bin/x][a][]"}));
  EXPECT_EQ(system.tokens, std::vector<const ports::AuthorizationToken*>(2, &token));
}

}  // namespace
}  // namespace pallimo::adapters::simulated
